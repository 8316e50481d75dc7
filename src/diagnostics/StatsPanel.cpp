#include "diagnostics/StatsPanel.h"

#include <numeric>

#include "config/ColourSchemes.h"
#include "state/InputBand.h"
#include "support/Decibels.h"
#include "support/NumberPicture.h"
#include "support/Rounding.h"

namespace quorl {

namespace {

constexpr Colour kGreen = 0x00FF00, kRed = 0x0000FF;

constexpr std::array<const char*, StatsPanel::kCount> kCaptions{
    "Peak In", "Peak Out", "AGC Gain", "LO",      "DSP Window", "DSP Window",
    "",        "",         "",         "Thread1", "Thread2",    "Thread3"};
// What the ear needs where the eye has the value's place and form.
constexpr std::array<const char*, StatsPanel::kCount> kNames{
    "Peak In", "Peak Out", "AGC Gain", "LO",      "DSP Window, load", "DSP Window, time",
    "",        "",         "",         "Thread1", "Thread2",          "Thread3"};
constexpr char kPanelText[] = "0";  // what a read-out holds before it is first written

constexpr double kRingEntries = 47.0;
constexpr double kFullScale = 32767.0;
constexpr double kBlockPeriod = 0.042666666;  // seconds
constexpr double kLoadLimit = 0.9;

}  // namespace

StatsPanel::StatsPanel(ControlRegistry& registry, PublicVars& vars, const PumpStatistics& statistics)
    : chkPerfStatsOn(registry, "chkPerfStatsOn"),
      lblStats(registry, "lblStats", kCount),
      lblStatsVal(registry, "lblStatsVal", kCount),
      vars_(vars),
      statistics_(statistics) {
  chkPerfStatsOn.Caption = "Statistics";
  chkPerfStatsOn.ToolTip = "Measure levels and processor load";
  chkPerfStatsOn.Click = [this] { chkPerfStatsOn_Click(); };
  chkPerfStatsOn_Click();
  for (int i = 0; i < kCount; ++i) {
    const std::string caption = kCaptions[static_cast<std::size_t>(i)];
    lblStats(i).Caption = caption;
    lblStatsVal(i).AccessibleName = kNames[static_cast<std::size_t>(i)];
    lblStats(i).Visible = lblStatsVal(i).Visible = !caption.empty();
    if (!caption.empty() && i < kThreads) lblStatsVal(i).Caption = kPanelText;
  }
}

void StatsPanel::chkPerfStatsOn_Click() {
  vars_.PerfStatsOn = chkPerfStatsOn.Value();
  chkPerfStatsOn.BackColour = vars_.PerfStatsOn ? kSelectedColour : kUnselectedColour;
}

template <typename Ring>
double StatsPanel::Mean(const Ring& ring) {
  return static_cast<double>(std::accumulate(ring.begin(), ring.end(), std::int64_t{0})) / kRingEntries;
}

void StatsPanel::Update() {
  if (!vars_.PerfStatsOn) return;
  const double peakIn = Mean(statistics_.PeakInRing);
  ShowPeak(kPeakIn, peakIn);
  lblStatsVal(kPeakIn).ForeColour = InputBandInk(InputBandOf(peakIn));
  ShowPeak(kPeakOut, Mean(statistics_.PeakOutRing));
  const double gain = vars_.AGCMeterGain;
  lblStatsVal(kAGCGain).Caption = FormatPicture(gain, "#0.00  ") + FormatPicture(Decibels(gain), "#0.0 dB");
  ShowLoad();
}

void StatsPanel::Rest() {
  for (const int index : {kPeakIn, kPeakOut, kAGCGain, kLoad, kTime}) {
    lblStatsVal(index).Caption = std::string();
  }
}

void StatsPanel::ShowPeak(int index, double peak) {
  lblStatsVal(index).Caption =
      FormatPicture(peak, "##,##0  ") + FormatPicture(Decibels(peak / kFullScale), "###,##0 dB");
}

void StatsPanel::ShowLoad() {
  const double microseconds = Mean(statistics_.PumpTimeRing);
  const double load = microseconds / 1000000.0 / kBlockPeriod;
  lblStatsVal(kLoad).Caption = FormatPicture(load, "#0%");
  lblStatsVal(kTime).Caption = FormatPicture(microseconds, "#,##0 uS");
  const float margin = static_cast<float>(kLoadLimit - load);
  // Once the margin is gone blocks are being lost: there is nothing to warn of any more.
  const Colour ink = margin > 0.0F ? kGreen : kRed;
  lblStatsVal(kLoad).ForeColour = lblStatsVal(kTime).ForeColour = ink;
}

void StatsPanel::ShowOscOut(std::int32_t oscOut) {
  lblStatsVal(kLO).Caption = FormatPicture(oscOut / 10.0, "#0 000 000 Hz");
}

void StatsPanel::AddSettings(SettingsTable& table) {
  table.Add<std::int32_t>(
      "PerfStatsOn", [this] { return chkPerfStatsOn.Value() ? 1 : 0; },
      [this](std::int32_t on) { chkPerfStatsOn.SetValue(on != 0); });
}

}  // namespace quorl
