// The memories: the plan in use, a row of its sub-bands, a row of the presets of the one that is chosen.
#include "desktop/views/Skin.h"
#include "desktop/window/FoldingRow.h"
#include "desktop/window/PanelParts.h"
#include "desktop/window/PanelRows.h"

namespace quorl {

namespace {

constexpr int kPlanWidth = 150, kBandWidth = 90, kLeastButton = 28;

// What comes and goes leaves its place to nobody.
QWidget* InItsPlace(QWidget* view) {
  if (!view) return nullptr;
  QSizePolicy policy = view->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  view->setSizePolicy(policy);
  return view;
}

// A row's buttons share it, whatever their names.
FaceView* AsWideAsTheOthers(FaceView* view) {
  if (!view) return nullptr;
  view->SetSmall();
  view->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  view->setMinimumWidth(kLeastButton);
  return view;
}

}  // namespace

QWidget* MakeMemoriesCard(Binder& bind) {
  CardView* card = bind.Card("frPresets", "Memories");
  QHBoxLayout* head = card->TitleRow();
  TextView* find = bind.Text("txtFind", kPlanWidth);
  Put(head, find);
  if (find) bind.PopupList("lstFound", find);
  head->addSpacing(skin::kGrid);
  Put(head, InItsPlace(bind.Choice("cboBandSelect", kPlanWidth)));
  Put(head, bind.Sign("imgBandSelect", Symbol::None));
  head->addSpacing(skin::kGrid);
  Put(head, InItsPlace(bind.Word("lblSubBand", " Wwwwwww ")));
  Put(head, InItsPlace(bind.Choice("cboSubBandSelect", kBandWidth)));
  Put(card->AddRow(), new FoldingRow(bind.Options("optSubBand", 18)));
  QHBoxLayout* presets = card->AddRow();
  for (FaceView* preset : bind.Options("optPreset", 12)) Put(presets, AsWideAsTheOthers(preset), 1);
  bind.Floating("lblPresetDesc", card);
  bind.PopupMenu("mnuUserPresets", card);
  return card;
}

}  // namespace quorl
