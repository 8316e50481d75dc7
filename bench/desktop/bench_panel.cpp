// The whole panel in other colours: controls, the desktop's tones, and everything painted once.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <cstdio>
#include <stdexcept>
#include <utility>

#include "Rows.h"
#include "core/FrameRig.h"
#include "desktop/window/Application.h"
#include "desktop/window/DialogWindows.h"
#include "desktop/window/PanelWindow.h"

namespace quorl {
namespace {

ColourSchemes Daylight() {
  ColourSchemes colours;
  colours.SDRBackgroundColour = ColourOf(237, 240, 242);
  colours.SDRFrameFocusColour = ColourOf(0, 110, 120);
  colours.SDRLabelColour = colours.SDRFrameNormalColour = ColourOf(70, 83, 92);
  colours.ScrollableLabelNormalColour = ColourOf(16, 24, 28);
  return colours;
}

struct Radio : test::FrameRig {
  Radio() {
    if (!Start()) throw std::runtime_error("the radio does not start");
  }
};

// The radio's own panel and its dialogs, shown off screen, to and fro between night and daylight.
class Panel {
 public:
  Panel() {
    colours_.AddRepaint([this] { ApplyColours(scheme_); });
    window_ = std::make_unique<PanelWindow>(radio_.Frame().Controls(), PanelWindow::Events{});
    dialogs_ = MakeDialogWindows(radio_.Frame().Controls(), [](const std::string&) {});
    window_->SetDisplaySize(DisplaySize::Full);
    window_->show();
    QApplication::processEvents();
  }
  // Until each widget has its tones.
  void ReColour() {
    std::swap(scheme_, other_);
    colours_.ReColour();
    QApplication::sendPostedEvents();
    window_->Clock().Flush();
  }
  void ReColourAndPaint() {
    ReColour();
    QApplication::processEvents();
  }

 private:
  Radio radio_;
  ColourSchemes scheme_, other_ = Daylight();
  ScrollableControls turned_{scheme_};
  PanelColours colours_{radio_.Frame().Controls(), scheme_, turned_};
  std::unique_ptr<PanelWindow> window_;
  std::vector<std::unique_ptr<QWidget>> dialogs_;
};

void Painted(benchmark::State& state) {
  Panel panel;
  for (auto _ : state) panel.ReColourAndPaint();
}
BENCHMARK(Painted)->Name("another theme")->Unit(benchmark::kMillisecond);

// A preview shows while the button goes down.
std::vector<Row> MeasureThemes() {
  Panel panel;
  return {{"Picture", "another theme, handed over", MillisecondsOf([&] { panel.ReColour(); }, 4), "ms", 30.0},
          {"Picture", "another theme, painted", MillisecondsOf([&] { panel.ReColourAndPaint(); }, 4), "ms",
           30.0}};
}

}  // namespace
}  // namespace quorl

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  quorl::PrepareApplication();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  const bool themes = quorl::Print(quorl::MeasureThemes());
  return quorl::Print(quorl::MeasureTuning()) && themes ? 0 : 1;
}
