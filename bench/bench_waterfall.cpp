// The waterfall's history and pixels, on a picture of 1200 x 400 at 2x.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "Rows.h"
#include "display/waterfall/WaterfallPainter.h"

namespace quorl {
namespace {

constexpr int kWidth = 2400, kHeight = 800;

// A band of noise whose lower edge somebody tunes now and then.
class Band {
 public:
  explicit Band(int bins) : magnitudes_(static_cast<std::size_t>(bins)) {
    std::mt19937 generator(1);
    std::exponential_distribution<float> levels(1e-3F);
    for (float& magnitude : magnitudes_) magnitude = levels(generator);
    view_.Frequencies = {23.4375, 7000000, 0, bins, true};
    view_.LineHeight = 2;
    view_.Width = kWidth;
    view_.Height = kHeight;
    history_.Start();
    for (int line = 0; line < kHeight; ++line) Add();
    Show();
  }
  void Add() {
    FrequencyScale frequencies = view_.Frequencies;
    frequencies.Offset += ++lines_ / 100 % 7 * 100;
    history_.Add({magnitudes_, frequencies, false}, lines_ * 42667LL);
  }
  void Show() { painter_.Prepare(history_, view_, history_.End() - 1); }
  void Recolour() {
    view_.Floor = view_.Floor < -100.0 ? -90.0 : -120.0;
    Show();
  }

 private:
  std::vector<float> magnitudes_;
  WaterfallHistory history_;
  WaterfallPainter painter_;
  WaterfallView view_;
  int lines_ = 0;
};

void Line(benchmark::State& state) {
  Band band(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    band.Add();
    band.Show();
  }
}
void Recolour(benchmark::State& state) {
  Band band(static_cast<int>(state.range(0)));
  for (auto _ : state) band.Recolour();
}
BENCHMARK(Line)->Name("waterfall line, 2x")->Arg(1024)->Arg(2048);
BENCHMARK(Recolour)->Name("waterfall recoloured, 2x")->Arg(1024)->Arg(2048)->Unit(benchmark::kMillisecond);

}  // namespace

std::vector<Row> MeasureWaterfall() {
  std::vector<Row> rows;
  for (const int bins : {1024, 2048}) {
    Band band(bins);
    const std::string of = ", " + std::to_string(bins) + " bins at 2x";
    const auto line = [&band] { band.Add(), band.Show(); };
    rows.push_back({"Picture", "waterfall line" + of, MillisecondsOf(line), "ms", 0.3});
    rows.push_back(
        {"Picture", "waterfall recoloured" + of, MillisecondsOf([&band] { band.Recolour(); }, 4), "ms", 4.0});
  }
  return rows;
}

}  // namespace quorl
