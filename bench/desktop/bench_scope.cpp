// A frame of the scope as the window shows it: prepared by the instrument, painted by Qt into memory.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <cstdio>
#include <random>

#include "Rows.h"
#include "desktop/views/QtCanvas.h"
#include "desktop/window/Application.h"
#include "display/analyser/clsSpectrumAnalyser.h"
#include "display/waterfall/Waterfall.h"

namespace quorl {
namespace {

constexpr int kWidth = 1200, kSpectrumHeight = 240, kWaterfallHeight = 160;  // pixels: 1200 x 400 in all

// Two surfaces of a picture, of which the visible one goes to the window.
struct Surfaces {
  Surfaces(int height, double ratio) {
    for (QtCanvas* canvas : {&First, &Second}) canvas->Resize({kWidth, height}, ratio);
  }
  void Paint(QPainter& painter) { (First.IsVisible() ? First : Second).CopyTo(painter); }
  QtCanvas First, Second;
};

// Two channels with fill, filter curve, notch and scale in the level view, a line of the waterfall a frame,
// events delivered every 64 bins.
class Scope {
 public:
  explicit Scope(double ratio)
      : spectrum_(kSpectrumHeight, ratio),
        waterfall_(kWaterfallHeight, ratio),
        window_(QSize(kWidth, kSpectrumHeight + kWaterfallHeight) * ratio, QImage::Format_RGB32),
        analyser_(settings_, vars_, [] { QCoreApplication::processEvents(); }) {
    window_.setDevicePixelRatio(ratio);
    analyser_.init();
    analyser_.picDisplay0(&spectrum_.First);
    analyser_.picDisplay1(&spectrum_.Second);
    analyser_.Active = analyser_.LevelView = analyser_.Fill = analyser_.ShowFilter = analyser_.ShowNotch =
        true;
    analyser_.Freeze = false;
    analyser_.SetChn2Enabled(true);
    analyser_.Window = SpectrumWindow::BlackmanHarris;
    waterfalls_.SetOptions({.On = true, .MarkSeconds = 15});
    analyser_.OnLine = [this](const SpectrumLine& line) { waterfalls_.Add(line, ++lines_ * 42667LL); };
    std::mt19937 generator(1);
    std::normal_distribution<float> noise(0.0F, 300.0F);
    for (SampleBuffer* block : {&left_, &right_}) {
      block->resize(clsSpectrumAnalyser::kPoints);
      for (float& sample : *block) sample = noise(generator);
    }
    for (int i = 0; i < 2 * kWaterfallHeight; ++i) (*this)();  // a full history
  }
  void operator()() {
    // Each block is another one.
    std::rotate(left_.begin(), left_.begin() + 77, left_.end());
    analyser_.Display_S(left_.data(), right_.data());
    QtCanvas& hidden = waterfall_.First.IsVisible() ? waterfall_.Second : waterfall_.First;
    QtCanvas& shown = &hidden == &waterfall_.First ? waterfall_.Second : waterfall_.First;
    waterfalls_.Draw(hidden, analyser_.Frequencies());
    hidden.SetVisible(true);
    shown.SetVisible(false);
    QPainter painter(&window_);
    spectrum_.Paint(painter);
    painter.translate(0, kSpectrumHeight);
    waterfall_.Paint(painter);
  }

 private:
  KernelSettings settings_;
  PublicVars vars_;
  Surfaces spectrum_, waterfall_;
  QImage window_;
  clsSpectrumAnalyser analyser_;
  Waterfall waterfalls_;
  SampleBuffer left_, right_;
  std::int64_t lines_ = 0;
};

void Frame(benchmark::State& state) {
  Scope scope(static_cast<double>(state.range(0)));
  for (auto _ : state) scope();
}
BENCHMARK(Frame)->Name("frame of 1200 x 400")->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

std::vector<Row> MeasureFrames() {
  std::vector<Row> rows;
  for (const auto& [ratio, limit] : {std::pair{1, 1.5}, std::pair{2, 4.0}}) {
    Scope scope(ratio);
    rows.push_back({"Picture", "frame of 1200 x 400 at " + std::to_string(ratio) + "x",
                    MillisecondsOf([&scope] { scope(); }), "ms", limit});
  }
  return rows;
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
  return quorl::Print(quorl::MeasureFrames()) ? 0 : 1;
}
