#include "desktop/window/LevelRows.h"

#include "desktop/views/Skin.h"
#include "desktop/window/PanelRows.h"

namespace quorl {

namespace {

constexpr int kDeviceWidth = 320, kBarWidth = 240, kToneWidth = 84;

QWidget* MakeLevel(Binder& bind, const std::string& dialog, int channel) {
  auto* line = new QWidget;
  auto* row = new QHBoxLayout(line);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(skin::kGrid);
  QLabel* side = Caption(channel == 0 ? "L" : "R");
  side->setFixedWidth(skin::kGrid);
  row->addWidget(side);
  if (LevelBarView* bar = bind.Level(IndexedName(dialog + ".picLevel", channel))) {
    bar->setFixedWidth(kBarWidth);
    row->addWidget(bar);
  }
  Put(row, bind.Reading(IndexedName(dialog + ".lblLevel", channel), "-00 dB  too loud", 12));
  row->addStretch(1);
  return line;
}

}  // namespace

void AddSoundRows(Binder& bind, FormPage& page, const std::string& dialog, const QString& input,
                  const QString& output) {
  page.Row(input, {bind.Choice(dialog + ".cboCapDevices", kDeviceWidth)});
  for (int channel = 0; channel < 2; ++channel) page.Under(MakeLevel(bind, dialog, channel));
  page.Under(bind.Advice(dialog + ".lblLevelHint", 2));
  FaceView* tone = bind.Button(dialog + ".cmdTestTone");
  if (tone) tone->setFixedWidth(kToneWidth);
  page.Row(output, {bind.Choice(dialog + ".cboPlayDevices", kDeviceWidth), tone});
  page.Under(bind.Advice(dialog + ".lblTestTone", 1));
}

}  // namespace quorl
