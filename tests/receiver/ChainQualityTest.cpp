// How clean the receive chain is, in single precision ahead of the AGC.
#include <gtest/gtest.h>

#include "receiver/ChainRig.h"

namespace quorl::test {
namespace {

// 2.7 s: dithered 16-bit noise lies 125 dB under a tone of 8000 in one bin of it.
constexpr int kSpan = 64;
constexpr double kLevel = 8000.0;

// Level of the audio line that a tone at `offset` from the IF makes.
double AudioLine(ChainRig& rig, double offset, int span) {
  const double f = OnBin(std::abs(offset), span);
  return LineAt(rig.Receive(ToneOf(12000.0 + std::copysign(f, offset), kLevel), span), f);
}

TEST(ChainQuality, OppositeSidebandIsAtLeast105DecibelsDown) {
  double worst = -300.0;
  for (const std::int32_t model : {SDRModel::DRT1, SDRModel::ElektorDRM}) {
    for (const std::int32_t mode : {DemodMode::USB, DemodMode::LSB}) {
      for (const bool lowSide : {false, true}) {
        ChainRig rig(model, mode, lowSide);
        rig.SetFilter(300, 2300);
        const double side = (mode == DemodMode::USB) == lowSide ? 1.0 : -1.0;  // where the sideband stands
        for (const double f : {350.0, 570.0, 1010.0, 1490.0, 1930.0, 2250.0}) {
          const double wanted = AudioLine(rig, side * f, kSpan), image = AudioLine(rig, -side * f, kSpan);
          EXPECT_GT(wanted, 0.8 * kLevel);
          EXPECT_LT(Decibels(image / wanted), -105.0) << model << " " << mode << " " << lowSide << " " << f;
          worst = std::max(worst, Decibels(image / wanted));
        }
      }
    }
  }
  RecordProperty("worst_dB", std::to_string(worst));
}

// A decoder hears no edge of ours. AM leaves its filters behind.
TEST(ChainQuality, DRMPassesTheBandWithinATenthOfADecibelOnEveryModel) {
  for (const std::int32_t model :
       {SDRModel::DRT1, SDRModel::ElektorDRM, SDRModel::IQXtalRX, SDRModel::RealToIQRX}) {
    ChainRig rig(model, DemodMode::AM);
    rig.Receive(ToneOf(12000.0, kLevel), 4);
    rig.Radio.SetDemodMode(DemodMode::DRM);
    rig.Radio.Housekeeping();
    double worst = 0.0;
    for (const double hertz : {2100.0, 2150.0, 2200.0, 2300.0, 2600.0, 3000.0, 5000.0, 8000.0, 12000.0,
                               16000.0, 19000.0, 21000.0, 21400.0, 21700.0, 21800.0, 21850.0, 21900.0}) {
      const double f = OnBin(hertz, 16);
      const Signal q = ToneOf(f, kLevel, std::numbers::pi / 2);
      const double gain = Decibels(LineAt(rig.Receive(ToneOf(f, kLevel), 16, 6, q), f) / kLevel);
      EXPECT_LT(std::abs(gain), 0.1) << model << " at " << hertz << " Hz";
      worst = std::max(worst, std::abs(gain));
    }
    RecordProperty("worst_dB_model_" + std::to_string(model), std::to_string(worst));
  }
}

TEST(ChainQuality, IQModelsRejectTheOppositeSidebandByTheirIFFilter) {
  // The pair splits nothing off here: the side lobes of the tracking IF filter's rectangular window set the
  // rejection, least next to the band.
  for (const std::int32_t model : {SDRModel::IQXtalRX, SDRModel::RealToIQRX}) {
    ChainRig rig(model, DemodMode::USB);
    TurnIFFilterOn(rig.Radio, IFFilterMode::Track);
    rig.SetFilter(300, 2300);
    std::vector<double> taps(BlockPoints);
    rig.Radio.Filters.IFFilterI.GetFilterTCoeffs_D(taps.data());
    double worst = 300.0;
    for (double f = 400.0; f < 2250.0; f += 90.0) {
      double line[2];
      for (const int image : {0, 1}) {
        const double hertz = 12000.0 + (image == 0 ? -1.0 : 1.0) * OnBin(f, 16);
        const Signal q = ToneOf(hertz, kLevel, std::numbers::pi / 2);
        line[image] = LineAt(rig.Receive(ToneOf(hertz, kLevel), 16, 6, q), OnBin(f, 16));
      }
      const double rejection = Decibels(line[0] / line[1]), at = OnBin(f, 16);
      const double byFilter =
          Decibels(std::abs(ResponseAt(taps, 12000.0 - at) / ResponseAt(taps, 12000.0 + at)));
      EXPECT_NEAR(rejection, byFilter, byFilter < 65.0 ? 0.5 : 20.0) << f;  // its zeros lie anywhere below
      worst = std::min(worst, rejection);
    }
    RecordProperty("least_rejection_dB_model_" + std::to_string(model), std::to_string(worst));
    EXPECT_GT(worst, 48.0) << model;
  }
}

TEST(ChainQuality, AMHarmonicsAreAtLeast90DecibelsDown) {
  for (const std::int32_t model : {SDRModel::DRT1, SDRModel::RealToIQRX}) {
    ChainRig rig(model, DemodMode::AM);
    const double f = OnBin(1000.0, kSpan);
    const SampleBuffer audio = rig.Receive(AMOf(12000.0, f, 0.5, kLevel), kSpan);
    const double tone = LineAt(audio, f);
    EXPECT_NEAR(tone, 0.5 * kLevel, 0.01 * kLevel) << model;
    for (const double harmonic : {2.0, 3.0, 4.0}) {
      EXPECT_LT(Decibels(LineAt(audio, harmonic * f) / tone), -90.0) << model << " " << harmonic;
    }
  }
}

TEST(ChainQuality, BlockSeamsMakeNoLineAbove110Decibels) {
  struct {
    const char* Name;
    std::int32_t Model, Mode;
    double Hertz;  // on the IF
    double Audio;
    std::function<void(Receiver&)> Filters;
  } const cases[] = {
      {"sideband pair", 0, DemodMode::USB, 11000.0, 1000.0, [](Receiver&) {}},
      {"IF filter", 0, DemodMode::USB, 11000.0, 1000.0,
       [](Receiver& r) { TurnIFFilterOn(r, IFFilterMode::Track); }},
      {"IF filter alone", 0, DemodMode::DRM, 12500.0, 12500.0,
       [](Receiver& r) { TurnIFFilterOn(r, IFFilterMode::Track); }},
      {"audio notch", 0, DemodMode::USB, 11000.0, 1000.0,
       [](Receiver& r) { TurnNotchOn(r, NotchModes::Manual, NotchTypes::Audio, 1400, 100); }},
      {"IF notch", 0, DemodMode::USB, 11000.0, 1000.0,
       [](Receiver& r) { TurnNotchOn(r, NotchModes::Manual, NotchTypes::IF, -1400, 100); }},
      {"dynamic filter", 0, DemodMode::USB, 11000.0, 1000.0, [](Receiver& r) { r.SetDynamicFilter(true); }},
      {"I/Q", 3, DemodMode::USB, 11000.0, 1000.0,
       [](Receiver& r) { TurnIFFilterOn(r, IFFilterMode::Track); }},
  };
  for (const auto& c : cases) {
    ChainRig rig(c.Model, c.Mode);
    c.Filters(rig.Radio);
    rig.SetFilter(300, 2300);
    const double shift = OnBin(c.Hertz, kSpan) - c.Hertz;
    const double audio = c.Audio + (c.Audio > 2400.0 ? shift : -shift);
    const SampleBuffer out = rig.Receive(ToneOf(c.Hertz + shift, kLevel), kSpan, 40);
    const double tone = LineAt(out, audio);
    EXPECT_GT(tone, 0.4 * kLevel) << c.Name;
    for (int k = 1; k <= 24; ++k) {
      for (const double side : {-1.0, 1.0}) {
        const double line = LineAt(out, audio + side * k * BlocksPerSecond);
        ASSERT_LT(Decibels(line / tone), -110.0) << c.Name << " " << side * k;
      }
    }
  }
}

TEST(ChainQuality, FMToneIsTheStrongestLine) {
  ChainRig rig(SDRModel::DRT1, DemodMode::FM);
  const double f = OnBin(1000.0, 16);
  const SampleBuffer audio = rig.Receive(FMOf(12000.0, f, 3000.0, kLevel), 16);
  const double tone = LineAt(audio, f);
  // 4096 to the radian of phase step. The folded wraps of the phase add lines of their own.
  EXPECT_NEAR(tone, 4096.0 * Radians(3000.0), 100.0);
  for (double other = 100.0; other < 6000.0; other += 48000.0 / (2048 * 16)) {
    ASSERT_TRUE(std::abs(other - f) < 10.0 || LineAt(audio, other) < 0.5 * tone) << other;
  }
}

TEST(ChainQuality, NotchOnATonesIs40DecibelsDeep) {
  const double f = OnBin(1000.0, 16), other = OnBin(1600.0, 16);
  const Signal both = SumOf(ToneOf(12000.0 - f, kLevel), ToneOf(12000.0 - other, 0.3 * kLevel));
  struct {
    const char* Name;
    std::int32_t Mode, Type, Centre;
  } const cases[] = {{"audio", NotchModes::Manual, NotchTypes::Audio, 1000},
                     {"IF", NotchModes::Manual, NotchTypes::IF, -1000},
                     {"auto", NotchModes::Auto, NotchTypes::Audio, 1300}};
  for (const std::int32_t model : {SDRModel::DRT1, SDRModel::RealToIQRX}) {
    for (const auto& c : cases) {
      ChainRig rig(model, DemodMode::USB);
      rig.SetFilter(300, 2300);
      const SampleBuffer before = rig.Receive(both, 16);
      TurnNotchOn(rig.Radio, c.Mode, c.Type, c.Centre, 100);
      const SampleBuffer after = rig.Receive(both, 16, 40);
      EXPECT_LT(Decibels(LineAt(after, f) / LineAt(before, f)), -40.0) << model << c.Name;
      EXPECT_NEAR(Decibels(LineAt(after, other) / LineAt(before, other)), 0.0, 0.1) << model << c.Name;
      rig.Radio.SetNotchMirror(true);  // the same band, passed
      const SampleBuffer mirrored = rig.Receive(both, 16, 40);
      EXPECT_NEAR(Decibels(LineAt(mirrored, f) / LineAt(before, f)), 0.0, 0.5) << model << c.Name;
      EXPECT_LT(Decibels(LineAt(mirrored, other) / LineAt(before, other)), -40.0) << model << c.Name;
    }
  }
}

}  // namespace
}  // namespace quorl::test
