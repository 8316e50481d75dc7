#include "SpectrumPicture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <vector>

#include "display/waterfall/Waterfall.h"

namespace quorl::cli {
namespace {

using Point = SpectrumMeter::Point;

// Pixels.
constexpr int kLeft = 56, kRight = 64, kTop = 28, kAxis = 40, kBottom = 16;
constexpr int kPlotWidth = 1024, kSpectrumHeight = 320;
constexpr int kTick = 4, kGap = 4;                     // of a scale, and from there to its text
constexpr int kBarLeft = 12, kBarWidth = 12;           // of the colours' scale beside the waterfall
constexpr double kLabelWidth = 80, kLabelHeight = 28;  // room for each label

constexpr Colour Rgb(Colour red, Colour green, Colour blue) {
  return blue << 16 | green << 8 | red;
}
constexpr Colour kPaper = Rgb(16, 20, 26), kPlotGround = Rgb(5, 8, 12);
constexpr Ink kTextInk{Rgb(214, 220, 226)}, kGridInk{Rgb(120, 140, 160), 0.3F}, kFrameInk{Rgb(120, 140, 160)},
    kMeanInk{Rgb(120, 255, 140)}, kFillInk{Rgb(60, 200, 90), 0.28F}, kPeakInk{Rgb(150, 160, 175), 0.75F};

std::string Format(const char* picture, double value) {
  std::array<char, 48> text{};
  std::snprintf(text.data(), text.size(), picture, value);
  return text.data();
}

// The smallest of 1, 2, 5 and their multiples by ten that is at least `least`.
double RoundStep(double least) {
  const double ten = std::pow(10.0, std::floor(std::log10(least)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * ten >= least * 0.999) return factor * ten;
  }
  return 10.0 * ten;
}

// All multiples of `step` from `low` to `high`.
template <typename Each>
void EachStep(double low, double high, double step, Each&& each) {
  constexpr double kSlack = 1e-6;  // a multiple at the very end is one of them
  const std::int64_t last = std::llround(std::floor(high / step + kSlack));
  for (std::int64_t n = std::llround(std::ceil(low / step - kSlack)); n <= last; ++n)
    each(static_cast<double>(n) * step);
}

struct Levels {
  double Top, Floor;
};

double Median(const std::vector<Point>& points) {
  std::vector<float> levels;
  levels.reserve(points.size());
  for (const Point& point : points) levels.push_back(point.Decibels);
  const auto middle = levels.begin() + static_cast<std::ptrdiff_t>(levels.size() / 2);
  std::nth_element(levels.begin(), middle, levels.end());
  return *middle;
}

double Highest(const std::vector<Point>& points) {
  double highest = SpectrumMeter::kSilence;
  for (const Point& point : points) highest = std::max<double>(highest, point.Decibels);
  return highest;
}

// Whole tens about all that is of interest, 60 dB at least.
Levels ScaleOf(const std::vector<Point>& mean, const std::vector<Point>& peaks) {
  const double top = std::ceil((Highest(peaks) + 1.0) / 10.0) * 10.0;
  const double floor = std::floor((Median(mean) - 8.0) / 10.0) * 10.0;
  return {top, std::min(floor, top - 60.0)};
}

void UsePixels(Canvas& canvas) {
  canvas.SetScale({0.0, 0.0, static_cast<double>(canvas.Width()), static_cast<double>(canvas.Height())});
}

// The parts of the picture, one below the other on its canvas.
class Painter {
 public:
  Painter(const SpectrumMeter& meter, double from)
      : meter_(meter),
        from_(from),
        lines_(static_cast<int>(meter.Lines().Count())),
        lineHeight_(std::max(static_cast<int>(LineCollector::kRows) / std::max(lines_, 1), 1)),
        scale_(meter.Frequencies()),
        canvas_(kLeft + kPlotWidth + kRight, kWaterfallTop + lines_ * lineHeight_ + kBottom) {
    UsePixels(canvas_);
    canvas_.Clear(kPaper);
  }

  RasterCanvas Draw(const std::string& title) {
    const auto mean = meter_.Mean(), peaks = meter_.Peaks();
    canvas_.Text({kLeft + kGap, kTop / 2.0F}, title, kTextInk, TextSide::Right, TextLevel::Middle);
    DrawPlot(mean, peaks, ScaleOf(mean, peaks));
    DrawFrequencies();
    DrawWaterfall({std::ceil(Highest(peaks)), std::floor(Median(mean)) - 6.0});
    return canvas_;
  }

 private:
  static constexpr int kWaterfallTop = kTop + kSpectrumHeight + kAxis;

  double XOf(double hertz) const { return scale_.XAt(hertz) / scale_.Width() * kPlotWidth; }
  double FrequencyStep() const {
    return RoundStep(scale_.Width() * scale_.HertzPerBin * kLabelWidth / kPlotWidth);
  }
  template <typename Each>
  void EachFrequency(Each&& each) const {
    EachStep(scale_.FrequencyAt(0.0), scale_.FrequencyAt(scale_.Width()), FrequencyStep(), each);
  }

  void Trace(Canvas& plot, const std::vector<Point>& points, Ink ink, double floor, bool filled) const {
    std::vector<CanvasPoint> line;
    line.reserve(points.size());
    for (const Point& point : points)
      line.push_back({static_cast<float>(scale_.XAt(point.Hertz)), point.Decibels});
    if (filled) plot.FillUnder(line, static_cast<float>(floor), kFillInk);
    plot.Polyline(line, ink);
  }

  void DrawPlot(const std::vector<Point>& mean, const std::vector<Point>& peaks, Levels levels) {
    RasterCanvas plot(kPlotWidth, kSpectrumHeight);
    plot.Clear(kPlotGround);
    const double step = RoundStep((levels.Top - levels.Floor) * kLabelHeight / kSpectrumHeight);
    plot.SetScale({0.0, levels.Top, scale_.Width(), levels.Floor - levels.Top});
    const auto y = [&](double level) {
      return static_cast<float>((levels.Top - level) / (levels.Top - levels.Floor) * kSpectrumHeight);
    };
    EachStep(levels.Floor, levels.Top, step, [&](double level) {
      const auto at = static_cast<float>(level);
      plot.Line({0.0F, at}, {static_cast<float>(scale_.Width()), at}, kGridInk);
      Label(kTop + y(level), Format("%.0f", level));
    });
    EachFrequency([&](double hertz) {
      const auto x = static_cast<float>(scale_.XAt(hertz));
      plot.Line({x, static_cast<float>(levels.Top)}, {x, static_cast<float>(levels.Floor)}, kGridInk);
    });
    Trace(plot, peaks, kPeakInk, levels.Floor, false);
    Trace(plot, mean, kMeanInk, levels.Floor, true);
    canvas_.Image(kLeft, kTop, kPlotWidth, kSpectrumHeight, plot.Pixels());
    canvas_.Text({kLeft - kTick - kGap, kTop / 2.0F}, "dB", kTextInk, TextSide::Left, TextLevel::Middle);
  }

  // A text and its tick at the left edge.
  void Label(double y, const std::string& text) {
    const auto at = static_cast<float>(y);
    canvas_.Line({kLeft - kTick, at}, {kLeft - 1, at}, kFrameInk);
    canvas_.Text({kLeft - kTick - kGap, at}, text, kTextInk, TextSide::Left, TextLevel::Middle);
  }

  void DrawFrequencies() {
    const float top = kTop + kSpectrumHeight, middle = top + kAxis / 2.0F;
    const double step = FrequencyStep() / 1000.0;
    const int decimals = std::clamp(static_cast<int>(std::ceil(-std::log10(step) - 1e-9)), 0, 3);
    const std::string picture = "%." + std::to_string(decimals) + "f";
    EachFrequency([&](double hertz) {
      const auto x = static_cast<float>(kLeft + XOf(hertz));
      for (const float tick : {top, top + kAxis - kTick})
        canvas_.Line({x, tick}, {x, tick + kTick - 1}, kFrameInk);
      canvas_.Text({x, middle}, Format(picture.c_str(), hertz / 1000.0), kTextInk, TextSide::Centre,
                   TextLevel::Middle);
    });
    canvas_.Text({kLeft + kPlotWidth + kBarLeft + kBarWidth + kGap, middle}, "kHz", kTextInk, TextSide::Right,
                 TextLevel::Middle);
  }

  void DrawWaterfall(Levels levels) {
    WaterfallOptions options;
    options.On = true;
    options.Top = levels.Top;
    options.Floor = levels.Floor;
    options.LineHeight = lineHeight_;
    Waterfall waterfall;
    waterfall.SetOptions(options);
    // The pace is of no importance: the scale of time is drawn here.
    for (int line = 0; line < lines_; ++line)
      waterfall.Add({meter_.Lines().Line(static_cast<std::size_t>(line)), scale_, meter_.Ascending()}, line);
    RasterCanvas picture(kPlotWidth, lines_ * lineHeight_);
    waterfall.Draw(picture, scale_);
    canvas_.Image(kLeft, kWaterfallTop, kPlotWidth, picture.DeviceHeight(), picture.Pixels());
    DrawTimes();
    DrawColours(levels, picture.DeviceHeight());
  }

  // The newest line is on top.
  void DrawTimes() {
    const double secondsPerPixel =
        meter_.Lines().BlocksPerLine() * static_cast<double>(BlockSeconds) / lineHeight_;
    const double height = lines_ * lineHeight_, step = TimeStep(secondsPerPixel * kLabelHeight);
    EachStep(from_, from_ + height * secondsPerPixel, step, [&](double time) {
      Label(kWaterfallTop + height - (time - from_) / secondsPerPixel, TimeText(time, step));
    });
  }

  static double TimeStep(double least) {
    for (const double step :
         {0.1, 0.2, 0.5, 1.0, 2.0, 5.0, 10.0, 15.0, 30.0, 60.0, 120.0, 300.0, 600.0, 900.0, 1800.0}) {
      if (step >= least) return step;
    }
    return std::ceil(least / 3600.0) * 3600.0;
  }

  // "1:05", "0:03.5", "2:00:00".
  static std::string TimeText(double seconds, double step) {
    const auto tenths = std::llround(seconds * 10.0);
    const auto hours = static_cast<int>(tenths / 36000), minutes = static_cast<int>(tenths / 600 % 60),
               second = static_cast<int>(tenths / 10 % 60);
    std::array<char, 48> text{};
    if (hours > 0) {
      std::snprintf(text.data(), text.size(), "%d:%02d:%02d", hours, minutes, second);
    } else if (step < 1.0) {
      std::snprintf(text.data(), text.size(), "%d:%02d.%d", minutes, second, static_cast<int>(tenths % 10));
    } else {
      std::snprintf(text.data(), text.size(), "%d:%02d", minutes, second);
    }
    return text.data();
  }

  void DrawColours(Levels levels, int height) {
    const float left = kLeft + kPlotWidth + kBarLeft, top = kWaterfallTop;
    std::vector<std::uint32_t> bar;
    for (int y = 0; y < height; ++y)
      bar.insert(bar.end(), kBarWidth, PaletteColour(Palette::Viridis, 1.0 - (y + 0.5) / height));
    canvas_.Image(static_cast<int>(left), kWaterfallTop, kBarWidth, height, bar.data());
    const double range = levels.Top - levels.Floor, step = RoundStep(range * kLabelHeight / height);
    EachStep(levels.Floor, levels.Top, step, [&](double level) {
      const auto y = static_cast<float>(top + (levels.Top - level) / range * height);
      canvas_.Text({left + kBarWidth + kGap, y}, Format("%.0f", level), kTextInk, TextSide::Right,
                   TextLevel::Middle);
    });
  }

  const SpectrumMeter& meter_;
  double from_;
  int lines_, lineHeight_;
  FrequencyScale scale_;
  RasterCanvas canvas_;
};

}  // namespace

RasterCanvas DrawSpectrum(const SpectrumMeter& meter, const std::string& title, double from) {
  return Painter(meter, from).Draw(title);
}

}  // namespace quorl::cli
