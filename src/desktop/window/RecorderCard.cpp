// The recorder: what it does, its buttons, and what is to be recorded; and its tracks.
#include "desktop/views/Skin.h"
#include "desktop/window/PanelParts.h"
#include "desktop/window/PanelRows.h"

namespace quorl {

namespace {

constexpr int kGroupGap = 8, kNameWidth = 90, kMostName = 240, kSeekWidth = 80, kListPixels = 11;
const QString kRecorderTitle = QStringLiteral("Recorder");

QWidget* Flat(Binder& bind, const char* frame, const std::vector<FaceView*>& options) {
  CardView* card = bind.Card(frame, {}, CardView::Title::Flat);
  QHBoxLayout* row = card->AddRow();
  row->setSpacing(3);
  for (FaceView* option : options) Put(row, Small(option));
  card->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  return card;
}

// A number that ends where its unit begins.
void PutNumber(QBoxLayout* row, LabelView* number, QWidget* unit) {
  if (number) number->SetAlignment(Qt::AlignRight);
  Put(row, number);
  Put(row, unit);
}

// State on the left, what has been recorded or played so far on the right.
void FillRecorderHead(Binder& bind, CardView* card) {
  QHBoxLayout* head = card->TitleRow();
  head->setStretch(0, 0);
  head->insertSpacing(0, skin::TextWidth(skin::TitleFont(), kRecorderTitle.toUpper()) + kGroupGap);
  Put(head, AsRoomAllows(bind.Word("lblRecorderState")), 1);
  Put(head, Small(bind.Button("cmdTimer")));
  head->addSpacing(kGroupGap);
  Put(head, Small(bind.Toggle("chkStayOn")));
  Put(head, Small(bind.Toggle("chkKeepTail")));
  head->addSpacing(kGroupGap);
  Put(head, bind.Reading("lblRecordTime", "00:00:00", 12));
  head->addSpacing(4);
  PutNumber(head, bind.Reading("lblRecordSize", "000,000,000", 12), Caption("KB"));
}

void FillTransport(Binder& bind, QHBoxLayout* row) {
  row->setSpacing(3);
  auto* rest = new QHBoxLayout;
  rest->setSpacing(0);
  row->addLayout(rest);
  for (int i = 0; i < 10; ++i) {
    // What makes sound, what moves within a file, what has to do with files.
    if (i == 4 || i == 7) row->addSpacing(kGroupGap);
    if (i == 0) Put(rest, bind.FocusRest("picWavCtlsOffFocus"));
    Put(i == 0 ? rest : row, bind.Transport(IndexedName("cmdWavCtls", i), static_cast<TransportSign>(i)));
    if (i == 6) Put(row, bind.Lamp("shpLooping"));
  }
  row->addSpacing(kGroupGap);
  Put(row, bind.Seek("sldRecorderSeek", kSeekWidth), 1);
  Put(row, bind.Reading("lblRecorderLeft", "-00:00:00", 12));
}

}  // namespace

QWidget* MakeRecorderCard(Binder& bind) {
  CardView* card = bind.Card("frRecorder", kRecorderTitle);
  FillRecorderHead(bind, card);
  FillTransport(bind, card->AddRow());
  QHBoxLayout* row = card->AddRow();
  if (TextView* name = bind.Text("txtRecordFileName", kNameWidth)) {
    name->setMinimumWidth(kNameWidth);
    name->setMaximumWidth(kMostName);
    Put(row, name, 1);
  }
  Put(row, Small(bind.Button("cmdBrowseWavFile")));
  row->addSpacing(kGroupGap);
  row->addWidget(Flat(bind, "frRecordSampling", bind.Options("optRecordSampleRate", 5)));
  Put(row, Small(bind.Toggle("chkRecordIF")));
  row->addSpacing(kGroupGap);
  row->addWidget(Flat(bind, "frRecordBitsPerSample", bind.Options("optRecordSamplePerBit", 2)));
  row->addWidget(Caption("bit"));
  row->addStretch(1);
  PutNumber(row, bind.Reading("lblRecordMBytesPerHr", "000", 12), bind.Word("lblRecordMBytesDesc"));
  row->addSpacing(kGroupGap);
  PutNumber(row, bind.Reading("lblRecorderDisk", "0,000", 12), bind.Word("lblRecorderDiskDesc"));
  return card;
}

QWidget* MakeTracksCard(Binder& bind) {
  constexpr int kLeast = 48, kMost = 84, kInList = 10;
  CardView* card = bind.Card("picRecorderTrackList", "Tracks", CardView::Title::None);
  QHBoxLayout* head = card->AddRow();
  head->addSpacing(kInList);
  if (LabelView* words = AsRoomAllows(bind.Reading("txtRecordingLogHeaders", {}, kListPixels)))
    head->addWidget(words, 1);
  FaceView* exporting = bind.Button("cmdExportTracks");
  Put(head, Small(exporting));
  bind.PopupMenu("mnuExportTracks", card, exporting);
  ListView* list = bind.List("lstRecordingLogs");
  if (!list) return card;
  list->setMinimumHeight(kLeast);
  list->setMaximumHeight(kMost);
  card->AddRow(1)->addWidget(list, 1);
  return card;
}

}  // namespace quorl
