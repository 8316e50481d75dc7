#include "desktop/window/PanelParts.h"

#include <QLabel>

#include "desktop/views/Skin.h"
#include "desktop/window/PanelRows.h"

namespace quorl {

namespace {

constexpr int kWordWidth = 44;  // of what stands before a value, so that the numbers stand in a column
constexpr int kValueWidth = 88;
constexpr int kSmallKnob = 24;
constexpr int kNotePixels = 11;

LabelView* Saying(const QString& word, LabelView* label) {
  if (label) label->SetWord(word);
  return label;
}

// A row for one value: its word, its number, and the slider of the same over all that is left.
void PutValue(CardView* card, QWidget* word, LabelView* value, SliderView* slider) {
  QHBoxLayout* row = card->AddRow();
  if (word) word->setFixedWidth(kWordWidth);
  if (value) value->setFixedWidth(kValueWidth);
  Put(row, word);
  Put(row, value);
  Put(row, slider, 1);
}

// A row for one value that a hand finds three times: number, slider and knob.
void PutKnobValue(QHBoxLayout* row, LabelView* value, SliderView* slider, KnobView* knob) {
  Put(row, value);
  row->addSpacing(4);
  Put(row, slider, 1);
  row->addSpacing(4);
  Put(row, knob);
}

// A word with its number, as one of several in a row.
void PutPair(QHBoxLayout* row, LabelView* word, LabelView* value) {
  Put(row, word);
  Put(row, value);
  row->addStretch(1);
}

QWidget* MakeModeCard(Binder& bind) {
  CardView* card = bind.Card("frDemod", "Mode", CardView::Title::Beside);
  Put(card->AddRow(), bind.Options("optMode", 6));
  return card;
}

QWidget* MakeVolumeCard(Binder& bind) {
  CardView* card = bind.Card("frAFOut", "Volume", CardView::Title::Beside);
  QHBoxLayout* row = card->AddRow();
  Put(row, bind.Loudspeaker("chkMute"));
  LabelView* value = In("dB", bind.Value("lblOutVol", "-00.0"));
  SliderView* slider = bind.Slide("sldOutVolume", 120);
  PutKnobValue(row, value, slider, bind.Knob("dialOutVol", kSmallKnob));
  return card;
}

QWidget* MakeFilterCard(Binder& bind) {
  CardView* card = bind.Card("frFilters", "Filter");
  Put(card->TitleRow(), Small(bind.Toggle("chkMusic")));
  Put(card->TitleRow(), Small(bind.Toggle("chkDynFilter")));
  Put(card->AddRow(), bind.Options("optFilter", 5));
  PutValue(card, Saying("Low", bind.Word("lblFLo")), In("Hz", bind.Value("lblFilterLo", "-00000")),
           bind.Slide("sldBW(0)", 56));
  PutValue(card, Saying("High", bind.Word("lblFHi")), In("Hz", bind.Value("lblFilterHi", "-00000")),
           bind.Slide("sldBW(1)", 56));
  return card;
}

QWidget* MakeIFFilterCard(Binder& bind) {
  CardView* card = bind.Card("frIFFilter", "IF filter");
  for (FaceView* option : bind.Options("optIFFilter", 3)) Put(card->TitleRow(), Small(option));
  card->TitleRow()->addSpacing(skin::kGrid);
  Put(card->TitleRow(), Small(bind.Toggle("chkIFFilter")));
  QHBoxLayout* row = card->AddRow();
  for (const char* edge : {"lblIFHi", "lblIFLo"}) {
    LabelView* word = bind.Word(std::string(edge) + "Desc");
    PutPair(row, word, In("Hz", bind.Value(edge, "-00000")));
  }
  return card;
}

QWidget* MakeNotchCard(Binder& bind) {
  CardView* card = bind.Card("frNotch", "Notch");
  Put(card->TitleRow(), In("Hz", bind.Reading("lblNotch", "00000", 12)));
  card->TitleRow()->addSpacing(4);
  Put(card->TitleRow(), Small(bind.Toggle("chkNotchAuto")));
  Put(card->TitleRow(), Small(bind.Toggle("chkNotchOn")));
  QHBoxLayout* row = card->AddRow();
  Put(row, bind.Options("optNotch", 2));
  row->addSpacing(skin::kGrid);
  Put(row, bind.Toggle("chkNotchType"), 1);
  Put(row, bind.Toggle("chkNotchMirror"), 1);
  PutValue(card, bind.Word("lblNotchCDesc"), In("Hz", bind.Value("lblNotchC", "-00000")),
           bind.Slide("sldNotch", 32));
  PutValue(card, bind.Word("lblNotchWDesc"), In("Hz", bind.Value("lblNotchW", "-00000")),
           bind.Slide("sldNotchWidth", 32));
  return card;
}

QWidget* MakeAGCCard(Binder& bind) {
  CardView* card = bind.Card("frAGC", "AGC");
  for (FaceView* option : bind.Options("optAGC", 5)) Put(card->TitleRow(), Small(option));
  card->TitleRow()->addSpacing(skin::kGrid);
  Put(card->TitleRow(), Small(bind.Toggle("chkAGC")));
  PutValue(card, Caption("Decay"), In("s", bind.Value("lblAGCAttack", "-00000")),
           bind.Slide("sldAGCAttack", 32));
  PutValue(card, Caption("Attack"), In("ms", bind.Value("lblAGCDecay", "-00000")),
           bind.Slide("sldAGCDecay", 32));
  return card;
}

QWidget* MakeBlankerCard(Binder& bind) {
  CardView* card = bind.Card("frNB", "Blanker");
  Put(card->TitleRow(), Small(bind.Toggle("chkNB")));
  LabelView* value = In("%", bind.Value("lblNB", "00.00"));
  SliderView* slider = bind.Slide("sldNB", 100);
  PutKnobValue(card->AddRow(), value, slider, bind.Knob("dialNB", kSmallKnob));
  return card;
}

// Dial with its step under it.
QLayout* MakeDialPart(Binder& bind) {
  auto* column = new QVBoxLayout;
  column->setSpacing(0);
  column->addStretch(1);
  KnobView* knob = bind.Knob("dialtuner", 84);
  if (knob) column->addWidget(knob, 0, Qt::AlignHCenter);
  if (LabelView* rate = bind.Word("lblTuneDialRate", "000.0 KHz")) {
    rate->SetAlignment(Qt::AlignHCenter);
    column->addWidget(rate, 0, Qt::AlignHCenter);
  }
  column->addStretch(1);
  return column;
}

QLayout* MakeMeterPart(Binder& bind) {
  auto* column = new QVBoxLayout;
  column->setSpacing(4);
  column->addStretch(1);
  Put(column, bind.SMeter("picSmeter", "shpSMeterGrid", 28, "lblSMeter"));
  auto* row = new QHBoxLayout;
  Put(row, bind.Reading("lblSMeter", "S9 +000 dB"));
  Put(row, AsRoomAllows(bind.Word("lblDecoder", {}, kNotePixels)), 1);
  row->addStretch(0);
  Put(row, Small(bind.Button("cmdCalibrateSMeter")));
  column->addLayout(row);
  column->addStretch(1);
  return column;
}

// Levels on the left, load and oscillator on the right.
QLayout* MakeStatistics(Binder& bind) {
  constexpr int kPixels = 11;
  struct Place {
    int Index;
    const char* Widest;
  };
  constexpr Place kPlaces[3][2] = {{{0, "00,000  -00 dB"}, {4, "000%"}},
                                   {{1, "00,000  -00 dB"}, {5, "00,000 uS"}},
                                   {{2, "000.00  00.0 dB"}, {3, "000 000 000 Hz"}}};
  constexpr int kLeftWidth = 150;
  auto* grid = new QGridLayout;
  grid->setVerticalSpacing(3);
  grid->setHorizontalSpacing(skin::kGrid);
  grid->setColumnMinimumWidth(0, kLeftWidth);
  grid->setColumnStretch(1, 1);
  for (int line = 0; line < 3; ++line) {
    for (int side = 0; side < 2; ++side) {
      const Place& place = kPlaces[line][side];
      auto* cell = new QHBoxLayout;
      cell->setSpacing(2);
      Put(cell, bind.Word(IndexedName("lblStats", place.Index), {}, kPixels));
      cell->addStretch(1);
      LabelView* value = bind.Reading(IndexedName("lblStatsVal", place.Index), place.Widest, kPixels);
      if (value) value->SetAlignment(Qt::AlignRight);
      Put(cell, value);
      grid->addLayout(cell, line, side);
    }
  }
  return grid;
}

}  // namespace

QWidget* MakeTuningCard(Binder& bind) {
  CardView* card = bind.Card("frFreqCtl", "Frequency", CardView::Title::None);
  card->setFixedHeight(kTopHeight);
  QHBoxLayout* regions = card->AddRow();
  regions->setSpacing(skin::kGrid);
  auto* left = new QVBoxLayout;
  left->setSpacing(4);
  FrequencyView* frequency = bind.Frequency("picFreqDisp", "lbl7Seg");
  if (frequency) left->addWidget(frequency, 0, Qt::AlignLeft);
  auto* foot = new QHBoxLayout;
  foot->setSpacing(3);
  foot->addWidget(Caption("Step"));
  // The lock stands at the step that it holds.
  LabelView* rate = bind.Value("lblTuningRate", "100 KHz");
  if (rate) rate->SetAlignment(Qt::AlignRight);
  Put(foot, rate);
  Put(foot, bind.Sign("imgTuneStepLock", Symbol::Lock));
  foot->addWidget(Caption("BFO"));
  Put(foot, In("Hz", bind.Value("lblBFO", "-00000")));
  foot->addStretch(1);
  Put(foot, Small(bind.Toggle("chkTuneLo")));
  foot->addSpacing(2);
  Put(foot, bind.Reading("lblClock", "00:00:00", 11));
  left->addLayout(foot);
  regions->addLayout(left);
  regions->addLayout(MakeDialPart(bind));
  regions->addLayout(MakeMeterPart(bind), 1);
  if (frequency) {
    bind.PopupList("cboTuningSteps", frequency);
    bind.Note("lblTuningLimit", frequency);
    bind.Entry("txtFrequency", frequency);
    bind.PopupMenu("mnuVFOControlSub", card);
    bind.PopupMenu("mnuVFOStepSub", card);
  }
  return card;
}

QWidget* MakeReceiverCard(Binder& bind) {
  CardView* card = bind.Card("frPwr", "Receiver", CardView::Title::None);
  card->setFixedHeight(kTopHeight);
  QHBoxLayout* power = card->AddRow();
  Put(power, bind.Options("optPwr", 2));
  Put(power, bind.Option("optPwr(2)"), 1);
  QHBoxLayout* display = card->AddRow();
  Put(display, bind.Options("optDisplaySize", 4));
  Put(display, bind.Toggle("chkSpectrumAnalyser"));
  Put(display, bind.Button("cmdConfig"));
  card->AddRow()->addLayout(MakeStatistics(bind));
  return card;
}

QWidget* MakeListeningStrip(Binder& bind) {
  auto* strip = new QWidget;
  strip->setMouseTracking(true);  // what lies between its cards is the panel's ground
  auto* row = new QHBoxLayout(strip);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(skin::kGrid);
  row->addWidget(MakeModeCard(bind), 1);
  row->addWidget(MakeVolumeCard(bind), 1);
  return strip;
}

QWidget* MakeControlColumn(Binder& bind) {
  auto* column = new QWidget;
  column->setMouseTracking(true);
  auto* rows = new QVBoxLayout(column);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(skin::kGrid);
  for (const auto make : {MakeFilterCard, MakeIFFilterCard, MakeNotchCard, MakeAGCCard, MakeBlankerCard}) {
    rows->addWidget(make(bind));
  }
  rows->addStretch(1);
  return column;
}

QWidget* MakeSetupStrip(Binder& bind) {
  CardView* card = bind.Card("", "Setup", CardView::Title::None);
  QHBoxLayout* row = card->AddRow();
  row->setSpacing(skin::kGrid);
  Put(row, bind.Toggle("chkPerfStatsOn"));
  row->addStretch(1);
  return card;
}

}  // namespace quorl
