// The pages of the configuration's window.
#include <QLabel>

#include "desktop/views/Skin.h"
#include "desktop/window/ConfigColours.h"
#include "desktop/window/ConfigWindow.h"
#include "desktop/window/LevelRows.h"
#include "desktop/window/PanelRows.h"

namespace quorl {

namespace {

constexpr int kNumberWidth = 120, kPeriodWidth = 150, kPortWidth = 320, kPathWidth = 400, kShortWidth = 60;
constexpr int kWires = 5, kSerialWires = 7, kWiringPixels = 13, kWindowStyles = 4;

std::string Name(const std::string& control) {
  return "frmConfig." + control;
}

// A box to tick, and what it does in quiet words beside it.
void Tick(Binder& bind, FormPage& page, const QString& caption, const char* name, const QString& hint = {}) {
  page.Row(caption, {bind.Tick(Name(name)), hint.isEmpty() ? nullptr : Caption(hint)});
}

QWidget* MakeWiring(Binder& bind, const char* frame, const char* lines, int count) {
  CardView* card = bind.Card(Name(frame), {}, CardView::Title::Shown);
  for (int line = 0; line < count; ++line)
    Put(card->AddRow(), bind.Reading(IndexedName(Name(lines), line), {}, kWiringPixels));
  return card;
}

QWidget* MakeWirings(Binder& bind) {
  auto* both = new QWidget;
  auto* row = new QHBoxLayout(both);
  row->setContentsMargins(0, skin::kGrid, 0, 0);
  row->setSpacing(skin::kGrid);
  row->addWidget(MakeWiring(bind, "frSerialWiring", "lblSerialWiring", kSerialWires), 1);
  row->addWidget(MakeWiring(bind, "frWiring", "lblWiring", kWires), 1);
  return both;
}

}  // namespace

QWidget* MakeReceiverPage(Binder& bind) {
  auto* page = new FormPage;
  page->Row("Board", {bind.Choice(Name("cboSDRModel"), kPortWidth), bind.Button(Name("cmdFirstStart"))});
  page->Row("IF", {bind.Text(Name("txtIFFrequency"), kNumberWidth)}, "Hz");
  Tick(bind, *page, "Oscillator", "chkLoLO", "it lies below the signal, not above it");
  page->Row("DDS clock",
            {bind.Text(Name("txtDDSClkin"), kNumberWidth), Caption("Hz"), bind.Button(Name("cmdCalDDS"))});
  Tick(bind, *page, "DDS", "chkAutoDDSRefresh", "a board that lost its supply finds its frequency");
  page->Gap();
  Tick(bind, *page, "Program", "chkAutoStartSDR", "presses On when the program starts");
  Tick(bind, *page, "Arithmetic", "chkUseSPL", "there is none on this machine");
  page->End();
  return page;
}

QWidget* MakeInterfacePage(Binder& bind) {
  auto* page = new FormPage;
  page->Options("Interface", bind.Options(Name("optIF"), 2));
  page->Head("Serial port");
  page->Row("Port", {bind.Choice(Name("cboComPort"), kPortWidth)});
  page->Row("Bit period", {bind.Text(Name("txtBitPeriod"), kPeriodWidth), Caption("s"),
                           bind.Button(Name("cmdBitPeriodDefault"))});
  page->Head("Parallel port");
  page->Row("Address", {bind.Text(Name("txtPortAddress"), kNumberWidth)});
  page->Row("Bit period", {bind.Text(Name("txtParallelPortBitPeriod"), kPeriodWidth), Caption("s"),
                           bind.Button(Name("cmdParallelPortDefaults"))});
  Tick(bind, *page, "Buffer", "chkInvertingIF", "without it every bit is sent as 0");
  page->Across(MakeWirings(bind));
  page->End();
  return page;
}

QWidget* MakeSoundPage(Binder& bind) {
  auto* page = new FormPage;
  AddSoundRows(bind, *page, "frmConfig", "Input", "Output");
  page->End();
  return page;
}

QWidget* MakeTuningPage(Binder& bind) {
  auto* page = new FormPage;
  Tick(bind, *page, "Encoder", "chkEnableEncoder", "at CTS and DSR of the board's serial port");
  Tick(bind, *page, {}, "chkShaftAutoRate", "the faster it turns, the larger the step");
  Tick(bind, *page, "Keyboard", "chkKBDSupport", "wherever the pointer is");
  Tick(bind, *page, "Wheel", "chkScrollWheelEnableOverScope", "as over the frequency");
  Tick(bind, *page, "Memories", "chkAutoTrackPresets", "each comes back as it was left");
  page->End();
  return page;
}

QWidget* MakeDisplayPage(Binder& bind) {
  auto* page = new FormPage;
  page->Row("Smoothing", {bind.Text(Name("txtSpectrumDisplaySmoothingCount"), kShortWidth)},
            "pictures, 1 to 24");
  Tick(bind, *page, "Scope", "chkSpectrumDisplayHideToolTip", "nothing follows the pointer");
  Tick(bind, *page, "Values", "chkScollLabelHiliteBorder", "the one that the wheel turns");
  Tick(bind, *page, "Window", "FormCaptionOffOnPwrOn", "it comes back with Off");
  page->End();
  return page;
}

QWidget* MakeDecoderPage(Binder& bind) {
  auto* page = new FormPage;
  page->Row("Program", {bind.Text(Name("txtPathToDream"), kPathWidth), bind.Button(Name("cmdFindDREAM"))});
  page->Row("Arguments", {bind.Text(Name("txtDreamProgArgs"), kPathWidth)});
  page->Hint("%CurFreq% stands for the tuned frequency in kHz.");
  page->Options("Window", bind.Options(Name("optDreamWindow"), kWindowStyles));
  page->Gap();
  Tick(bind, *page, "In DRM mode", "chkDreamRunOnDRM");
  Tick(bind, *page, {}, "chkCloseSoundCardOnDRM", "the decoder has it meanwhile");
  Tick(bind, *page, {}, "chkMuteAFOnDRM", "the decoder is heard alone");
  page->Row("Output", {bind.Choice(Name("cboDRMPlayDevices"), kPortWidth)});
  page->Hint("Where the receiver plays in DRM mode: a null sink is what a decoder listens to.");
  page->Gap();
  Tick(bind, *page, "Closing", "chkDreamCloseOnExit");
  Tick(bind, *page, {}, "chkDreamCloseOnModeChange");
  page->Row({}, {bind.Button(Name("cmdDreamDefault"))});
  page->End();
  return page;
}

QWidget* MakeColoursPage(Binder& bind) {
  return new ConfigColours(bind);
}

QWidget* MakeAboutPage(Binder& bind) {
  auto* page = new FormPage;
  page->Across(bind.Message(Name("lblAbout"), kPathWidth));
  page->Row("Help", {bind.Button(Name("cmdGuide"))}, "F1 opens it, too");
  page->End();
  return page;
}

QWidget* MakeRemotePage(Binder& bind) {
  auto* page = new FormPage;
  Tick(bind, *page, "Remote control", "chkRemoteOn");
  page->Row("Address", {bind.Text(Name("txtRemoteAddress"), kNumberWidth)});
  page->Row("Port", {bind.Text(Name("txtRemotePort"), kShortWidth)});
  page->Gap();
  Tick(bind, *page, "Network", "chkRemoteOthers");
  page->Hint(
      "Needed for any address but this computer's own. Anybody on that network can then tune the radio: "
      "there is no password, and nothing is encrypted.");
  page->Gap();
  page->Row("State", {bind.Message(Name("lblRemoteState"), kPathWidth)});
  page->Hint(
      "Loggers and decoders find the radio as Hamlib's model 2, NET rigctl, at this address and port.");
  page->End();
  return page;
}

}  // namespace quorl
