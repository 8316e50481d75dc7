// What the receiver's settings do to a signal.
#include <gtest/gtest.h>

#include "receiver/ChainRig.h"

namespace quorl::test {
namespace {

constexpr double kCarrier = 8000.0;
constexpr std::int32_t kBFO = 375;  // Hz: 16 blocks have a bin there

TEST(Receiver, IFEdgesFollowModeSideAndSetting) {
  struct {
    std::int32_t Mode;
    bool LowSide, Manual;
    std::int32_t Low, High;
  } const rows[] = {
      {DemodMode::AM, false, false, 9700, 14300},
      {DemodMode::AM, false, true, 11000, 15000},
      {DemodMode::BC, true, false, 9700, 14300},
      {DemodMode::BC, true, true, 11000, 15000},
      {DemodMode::USB, false, false, 9700, 11700},
      {DemodMode::USB, true, false, 12300, 14300},
      {DemodMode::USB, true, true, 11000, 15000},
      {DemodMode::LSB, false, false, 12300, 14300},
      {DemodMode::LSB, true, false, 9700, 11700},
      {DemodMode::LSB, true, true, 9000, 11000},
      {DemodMode::FM, false, false, 2000, 22000},
      {DemodMode::FM, true, true, 2000, 22000},
      {DemodMode::DRM, false, false, 9700, 14300},
      {DemodMode::DRM, true, true, 9700, 14300},
      // Upper extent and lower extent count to opposite sides, so these come out crossed.
      {DemodMode::USB, false, true, 13000, 9000},
      {DemodMode::LSB, false, true, 15000, 11000},
  };
  for (const auto& row : rows) {
    for (const std::int32_t bfo : {0, 500}) {
      ChainRig rig(SDRModel::DRT1, row.Mode, row.LowSide);
      rig.Radio.SetBFO(bfo);
      TurnIFFilterOn(rig.Radio, row.Manual ? IFFilterMode::Manual : IFFilterMode::Track);
      rig.Radio.SetIFHigh(3000);
      rig.Radio.SetIFLow(1000);
      rig.SetFilter(300, 2300);
      const std::int32_t offset = row.LowSide ? bfo : -bfo;
      const std::string where = "mode " + std::to_string(row.Mode) + (row.LowSide ? " low" : " high") +
                                (row.Manual ? " manual" : "");
      EXPECT_EQ(rig.Radio.Filters.IFFilterI.FLow, row.Low + offset) << where;
      EXPECT_EQ(rig.Radio.Filters.IFFilterI.FHigh, std::min(row.High + offset, 24000)) << where;
    }
  }
}

TEST(Receiver, ModesRunTheFiltersTheyNeed) {
  ChainRig rig;
  FilterBank& f = rig.Radio.Filters;
  struct {
    std::int32_t Mode;
    bool Audio, Splitter, Sideband;
  } const rows[] = {{DemodMode::AM, true, true, false}, {DemodMode::USB, true, true, true},
                    {DemodMode::LSB, true, true, true}, {DemodMode::DRM, false, false, false},
                    {DemodMode::FM, true, true, false}, {DemodMode::BC, true, true, false}};
  for (const auto& row : rows) {
    rig.Radio.SetDemodMode(row.Mode);
    EXPECT_EQ(f.AFFilter.Active, row.Audio) << row.Mode;
    EXPECT_EQ(f.IQFilterI.Active && f.IQFilterQ.Active, row.Splitter) << row.Mode;
    EXPECT_EQ(f.SSBFilterI.Active && f.SSBFilterQ.Active, row.Sideband) << row.Mode;
  }
  EXPECT_TRUE(f.IFFilterI.WindowType == 0 && f.NotchFilterI.WindowType == 1 && f.AFFilter.WindowType == 2);
  rig.Radio.Vars.SDRModelNo = SDRModel::IQXtalRX;
  rig.Radio.Housekeeping();
  EXPECT_TRUE(f.IFFilterQ.Active);
  // Both streams of an I/Q board pass the same band at the same phase.
  rig.Radio.SetDemodMode(DemodMode::LSB);
  rig.Radio.SetBFO(-500);
  rig.SetFilter(300, 2300);
  for (const clsFFTFilter* filter : {&f.IFFilterI, &f.IFFilterQ}) {
    EXPECT_EQ(filter->FLow, 12800);
    EXPECT_EQ(filter->FHigh, 14800);
    EXPECT_FALSE(filter->QPhase);
    std::vector<double> taps(BlockPoints);
    filter->GetFilterTCoeffs_D(taps.data());
    EXPECT_GT(std::abs(ResponseAt(taps, 14000.0)), 0.9);
    EXPECT_LT(std::abs(ResponseAt(taps, 16000.0)), 0.1);
  }
  rig.Radio.Vars.SDRModelNo = SDRModel::DRT1;
  rig.Radio.SetFilterEdges(300, 3000);
  rig.Radio.Housekeeping();
  EXPECT_FALSE(f.IFFilterQ.Active);
}

TEST(Receiver, BFOMovesThePitch) {
  for (const bool lowSide : {false, true}) {
    ChainRig rig(SDRModel::DRT1, DemodMode::USB, lowSide);
    rig.SetFilter(300, 2300);
    rig.Radio.SetBFO(lowSide ? -kBFO : kBFO);
    EXPECT_EQ(rig.Radio.Vars.BFOOffset, -kBFO);
    const double f = OnBin(800.0, 16);
    const SampleBuffer audio = rig.Receive(ToneOf(12000.0 + (lowSide ? f : -f), kCarrier), 16);
    EXPECT_NEAR(LineAt(audio, f + kBFO), kCarrier, 0.01 * kCarrier);
    EXPECT_LT(LineAt(audio, f), 0.01 * kCarrier);
    rig.Radio.SetLowSideLO(!lowSide);
    EXPECT_EQ(rig.Radio.Vars.BFOOffset, kBFO);
  }
  ChainRig rig;
  const PublicVars& vars = rig.Radio.Vars;
  rig.Radio.SetBFO(0);
  EXPECT_EQ(vars.MixerPhaseStep, 1 << 28);
  rig.Radio.SetBFO(-12000);
  EXPECT_EQ(vars.MixerPhaseStep, 0);
  rig.Radio.SetBFO(1);
  EXPECT_EQ(vars.MixerPhaseStep, 268457826);  // 2^30 / 48000 x 12001 = 268457825.62
}

TEST(Receiver, FastMixerAndOscillatorGiveTheSameAudio) {
  const double f = OnBin(1000.0, 16);
  double level[2];
  for (const int table : {0, 1}) {
    ChainRig rig(SDRModel::DRT1, DemodMode::USB);
    rig.SetFilter(300, 2300);
    if (table == 1) rig.Radio.Vars.MixerFrequency = IFCentre + 1;  // takes the table, at the same step
    level[table] = LineAt(rig.Receive(ToneOf(12000.0 - f, kCarrier), 16), f);
  }
  EXPECT_NEAR(Decibels(level[0] / level[1]), 0.0, 1e-3);
}

TEST(Receiver, SidebandSumOfTheIQPathFollowsTheBFOsSign) {
  const double f = OnBin(1000.0, 16);
  struct {
    std::int32_t Mode, BFO;
    double I, Q;  // what a tone on that branch alone makes, of its level
  } const rows[] = {
      {DemodMode::USB, 0, 0.5, 0.5}, {DemodMode::LSB, 0, 0.5, 0.5}, {DemodMode::USB, -kBFO, 0.5, 0.5}};
  for (const auto& row : rows) {
    for (const bool onQ : {false, true}) {
      ChainRig rig(SDRModel::IQXtalRX, row.Mode);
      rig.SetFilter(300, 2300);
      rig.Radio.SetBFO(row.BFO);
      const Signal tone = ToneOf(12000.0 - f, kCarrier), none = ToneOf(0.0, 0.0);
      const SampleBuffer audio = rig.Receive(onQ ? none : tone, 16, 6, onQ ? tone : none);
      EXPECT_NEAR(LineAt(audio, f + row.BFO), (onQ ? row.Q : row.I) * kCarrier, 0.02 * kCarrier);
    }
  }
  // Branches against each other: opposite phases of Q add or cancel. LSB with the BFO at 0 takes the cosine
  // on both, so equal branches add up.
  for (const auto& [mode, bfo, expected] : {std::tuple{DemodMode::LSB, 0, 1.0},
                                            {DemodMode::USB, 0, std::sqrt(0.5)},
                                            {DemodMode::USB, -kBFO, std::sqrt(0.5)}}) {
    ChainRig rig(SDRModel::IQXtalRX, mode);
    rig.SetFilter(300, 2300);
    rig.Radio.SetBFO(bfo);
    const Signal tone = ToneOf(12000.0 - f, kCarrier);
    const SampleBuffer audio = rig.Receive(tone, 16, 6, tone);
    EXPECT_NEAR(LineAt(audio, f + bfo), expected * kCarrier, 0.02 * kCarrier) << mode << " " << bfo;
  }
}

TEST(Receiver, DRMPassesTheIFAsItCame) {
  ChainRig rig(SDRModel::DRT1, DemodMode::DRM);
  const SampleBuffer noise = RandomFloats(SamplesPerEvent, 9000.0F, 3);
  std::array<std::int16_t, SamplesPerEvent> in;
  for (std::size_t k = 0; k < in.size(); ++k) in[k] = static_cast<std::int16_t>(noise[k]);
  for (int block = 0; block < 3; ++block) {
    rig.I = in;
    rig.Step();
    EXPECT_EQ(rig.I, in) << block;
  }
}

TEST(Receiver, SignalLevelIsTheRootMeanSquare) {
  ChainRig rig(SDRModel::DRT1, DemodMode::AM);
  rig.Receive(ToneOf(12000.0, kCarrier), 50);
  const PublicVars& vars = rig.Radio.Vars;
  EXPECT_NEAR(rig.Radio.MeanSignalLevel(), kCarrier / std::sqrt(2.0), 1.0);
  for (std::size_t k = 0; k + 1 < vars.SignalPowerRing.size(); ++k) {
    ASSERT_NEAR(vars.SignalPowerRing[k], 2048 * kCarrier * kCarrier / 2, 1e-3 * 2048 * kCarrier * kCarrier);
  }
  EXPECT_EQ(vars.SignalPowerRing[46], 0.0F);  // the index turns before the last entry
}

TEST(Receiver, BlankerTurnsWeakBinsDownAndLeavesStrongOnes) {
  EXPECT_FLOAT_EQ(NoiseBlanker::ThresholdOf(10000.0F), 0.2F);
  EXPECT_FLOAT_EQ(NoiseBlanker::ThresholdOf(0.0F), 0.0F);
  // Tones on exact bins of a block; the blanker transforms it with zeros behind, which spreads each of them.
  const double strong = 12000.0 + 25 * BlocksPerSecond, weak = 12000.0 - 101 * BlocksPerSecond;
  const double outside = 20015.625;
  const auto received = [&](bool on, float control) {
    ChainRig rig(SDRModel::DRT1, DemodMode::DRM);
    rig.Radio.SwitchNoiseBlanker(on);
    rig.Radio.SetNoiseBlankerLevel(control);
    rig.SetFilter(50, 5000);
    const Signal all = SumOf(SumOf(ToneOf(strong, 8000.0), ToneOf(weak, 800.0)), ToneOf(outside, 800.0));
    return rig.Receive(all, 8);
  };
  const SampleBuffer off = received(false, 0), zero = received(true, 0.0F), on = received(true, 10000.0F);
  for (std::size_t k = 0; k < off.size(); ++k) ASSERT_NEAR(off[k], zero[k], 0.1) << k;
  EXPECT_NEAR(Decibels(LineAt(on, strong) / LineAt(off, strong)), 0.0, 1.0);
  EXPECT_NEAR(Decibels(LineAt(on, weak) / LineAt(off, weak)), Decibels(0.02), 3.0);
  EXPECT_NEAR(Decibels(LineAt(on, outside) / LineAt(off, outside)), 0.0, 0.5);

  // A band that the BFO has moved off the spectrum has no bins.
  ChainRig rig;
  NoiseBlanker blanker(rig.Radio.Vars, rig.Radio.Filters);
  rig.Radio.SetNoiseBlankerLevel(10000.0F);
  clsFFTFilter& band = rig.Radio.Filters.IFFilterI;
  for (const auto& [low, high] : {std::pair{-2300, -300}, {25000, 27000}}) {
    band.FLow = low;
    band.FHigh = high;
    band.MakeFilter();
    const SampleBuffer noise = RandomFloats(SegmentSize, 9000.0F, 3);
    SampleBuffer block = noise;
    blanker.NoiseBlank(block.data());
    for (std::size_t k = 0; k < SamplesPerEvent; ++k) ASSERT_NEAR(block[k], noise[k], 0.1) << low << " " << k;
  }
}

TEST(Receiver, AMutedInputStaysSilentInEveryMode) {
  for (const std::int32_t mode : {DemodMode::USB, DemodMode::LSB, DemodMode::AM, DemodMode::BC}) {
    ChainRig rig(SDRModel::DRT1, mode);
    rig.Radio.Vars.AGCON = true;
    rig.Radio.Agc.FillDelayLine();
    int peak = 0;
    for (int block = 0; block < 250; ++block) {
      rig.I.fill(-1);
      rig.Step();
      for (const std::int16_t sample : rig.I) peak = std::max(peak, std::abs(int{sample}));
    }
    EXPECT_LE(peak, 1) << mode;
  }
}

TEST(Receiver, DynamicFilterFollowsMovesOfMoreThan100Hertz) {
  ChainRig rig(SDRModel::DRT1, DemodMode::USB);
  rig.SetFilter(300, 3300);
  const clsFFTFilter& dyn = rig.Radio.Filters.DynFilter;
  EXPECT_EQ(dyn.FLow, 600);
  EXPECT_EQ(dyn.FHigh, 3000);
  rig.Radio.SetDynamicFilter(true);
  PublicVars& vars = rig.Radio.Vars;
  // Bins are taken as 12 Hz apart from the filter's low edge and told in their true 11.72 Hz.
  const auto setPeak = [&](std::int32_t bin) {
    vars.PeakBinRing.fill(bin);
    rig.Radio.Housekeeping();
    return vars.PeakFrequency;
  };
  EXPECT_EQ(setPeak(60), 24000 * (60 + 300 / 12) / 2048);
  const std::int32_t start = vars.PeakLastFrequency;
  EXPECT_EQ(start, vars.PeakFrequency);
  const auto edges = [&] { return std::pair{dyn.FLow, dyn.FHigh}; };
  const auto before = edges();
  EXPECT_EQ(setPeak(68) - start, 93);  // 8 bins: not enough
  EXPECT_EQ(edges(), before);
  EXPECT_EQ(vars.PeakLastFrequency, start);
  EXPECT_GT(std::abs(setPeak(50) - start), 100);
  EXPECT_NE(edges(), before);
  EXPECT_EQ(vars.PeakLastFrequency, vars.PeakFrequency);
  for (const std::int32_t bin : {250, 0, 250, 90}) {
    setPeak(bin);
    EXPECT_GE(dyn.FLow, 300);
    EXPECT_LE(dyn.FLow, 600);
    EXPECT_GE(dyn.FHigh, 2700);
    EXPECT_LE(dyn.FHigh, 3300);
  }

  // And by a real tone.
  const double f = OnBin(2000.0, 16);
  rig.Receive(ToneOf(12000.0 - f, kCarrier), 20, 0);
  EXPECT_NEAR(vars.PeakFrequency, 2000, 24);
}

TEST(Receiver, APresetMovesARunningDynamicFilterAndNoNotchOfTheHand) {
  ChainRig rig(SDRModel::DRT1, DemodMode::USB);
  Receiver& radio = rig.Radio;
  const auto passes = [&](double hertz) {
    std::vector<double> taps(BlockPoints);
    radio.Filters.DynFilter.GetFilterTCoeffs_D(taps.data());
    return std::abs(ResponseAt(taps, hertz)) > 0.5;
  };
  radio.SetFilterMode(1);  // 200 to 600 Hz
  TurnNotchOn(radio, NotchModes::Manual, NotchTypes::Audio, 1200, 100);
  radio.SetDynamicFilter(true);
  radio.Housekeeping();
  EXPECT_TRUE(passes(400.0) && !passes(1500.0));
  radio.SetFilterMode(3);  // 300 to 3000 Hz
  radio.Housekeeping();
  EXPECT_TRUE(passes(1500.0) && passes(2500.0));
  radio.Vars.PeakBinRing.fill(100);
  radio.Housekeeping();
  EXPECT_GT(radio.Vars.PeakFrequency, 1400);
  EXPECT_EQ(radio.Vars.NotchCentre, 1200);
}

TEST(Receiver, AVerbSaidTwiceOrWithoutSenseChangesNothing) {
  ChainRig rig;
  rig.SetFilter(300, 3300);
  PublicVars& vars = rig.Radio.Vars;
  const std::int32_t low = vars.FilterLo;
  rig.Radio.SetMusic(false);
  EXPECT_EQ(vars.FilterLo, low);
  rig.Radio.SetMusic(true);
  rig.Radio.SetMusic(true);
  EXPECT_EQ(vars.FilterLo, Receiver::kMusicLow);
  rig.Radio.SetMusic(false);
  EXPECT_EQ(vars.FilterLo, low);
  rig.Radio.SwitchIFFilter(true);
  rig.Radio.SwitchNotch(true);
  rig.Radio.SwitchAGC(true);
  for (const std::int32_t mode : {-1, 99}) {
    rig.Radio.SetDemodMode(mode);
    rig.Radio.SetFilterMode(mode);
    rig.Radio.SetIFFilterMode(mode);
    rig.Radio.SetNotchMode(mode);
    rig.Radio.SetNotchType(mode);
    rig.Radio.SetAGCPreset(mode);
  }
  EXPECT_EQ(vars.CurrentDemodMode, DemodMode::AM);
  EXPECT_EQ(vars.NotchMode, NotchModes::Manual);
  EXPECT_LT(vars.CurrentFilterMode, FilterModeCount);
  rig.Step();
}

TEST(Receiver, AutoNotchStaysForSmallMoves) {
  ChainRig rig(SDRModel::DRT1, DemodMode::USB);
  rig.SetFilter(300, 3300);
  TurnNotchOn(rig.Radio, NotchModes::Auto, NotchTypes::Audio, 1000, 400);
  PublicVars& vars = rig.Radio.Vars;
  const auto centreAt = [&](std::int32_t bin) {
    vars.PeakBinRing.fill(bin);
    rig.Radio.Housekeeping();
    return vars.NotchLastCentre;
  };
  const std::int32_t first = centreAt(100);
  EXPECT_EQ(first, 24000 * 125 / 2048);
  EXPECT_EQ(centreAt(104), first);  // 47 Hz, under an eighth of the width
  EXPECT_EQ(rig.Radio.Filters.NotchFilterI.FLow, first - 200);
  EXPECT_EQ(centreAt(105), 24000 * 130 / 2048);  // 59 Hz
  EXPECT_EQ(rig.Radio.Filters.NotchFilterI.FHigh, 24000 * 130 / 2048 + 200);
}

TEST(Receiver, TheAudioNotchCarriesTheTailOfItsLastBlock) {
  ChainRig rig;
  TurnNotchOn(rig.Radio, NotchModes::Manual, NotchTypes::Audio, 1000, 100);
  AudioNotch notch(rig.Radio.Vars, rig.Radio.Filters);
  clsFFTFilter& filter = rig.Radio.Filters.NotchFilterI;
  std::vector<float> taps(BlockPoints);
  taps.back() = 1.0F;  // delays by a block less one sample
  filter.PutFilterTCoeffs_S(taps.data());
  const auto pass = [&](float level) {
    SampleBuffer block(SegmentSize);
    std::fill_n(block.begin(), SamplesPerEvent, level);
    notch.AudioNotchAndPeak(block.data());
    return block;
  };
  SampleBuffer out = pass(100.0F);
  EXPECT_NEAR(out[0], 0.0, 1e-3);
  EXPECT_NEAR(out[2047], 100.0, 1e-3);
  // While the notch is off its tail waits.
  filter.Active = false;
  EXPECT_EQ(pass(7.0F)[2000], 7.0F);
  filter.Active = true;
  out = pass(0.0F);
  for (std::size_t k = 0; k < SamplesPerEvent; ++k) ASSERT_NEAR(out[k], k < 2046 ? 100.0 : 0.0, 1e-3) << k;
  EXPECT_NEAR(pass(0.0F)[5], 0.0, 1e-3);
}

TEST(Receiver, NotchMatchesDirectConvolution) {
  // As audio notch on the passed IF, against its own taps: one tap more than the overlap carries.
  ChainRig rig(SDRModel::DRT1, DemodMode::DRM);
  TurnNotchOn(rig.Radio, NotchModes::Manual, NotchTypes::Audio, 1000, 100);
  rig.Radio.Housekeeping();
  std::vector<double> taps(BlockPoints);
  rig.Radio.Filters.NotchFilterI.GetFilterTCoeffs_D(taps.data());
  const SampleBuffer noise = RandomFloats(4 * SamplesPerEvent, 20000.0F, 5);
  SampleBuffer in(noise.size()), out;
  for (std::size_t k = 0; k < in.size(); ++k) in[k] = std::trunc(noise[k]);
  for (std::size_t at = 0; at < in.size(); at += SamplesPerEvent) {
    for (std::size_t k = 0; k < SamplesPerEvent; ++k) rig.I[k] = static_cast<std::int16_t>(in[at + k]);
    rig.Step();
    out.insert(out.end(), rig.Radio.Chain.AudioBlock(), rig.Radio.Chain.AudioBlock() + SamplesPerEvent);
  }
  const std::vector<double> expected = DirectFir(taps, in);
  for (std::size_t k = 0; k < out.size(); ++k) {
    // The AGC stage's limiter holds blocks to 16384; the noise's peaks lie above it.
    const std::size_t block = k / SamplesPerEvent * SamplesPerEvent;
    double peak = 0.0;
    for (std::size_t j = block; j < block + SamplesPerEvent; ++j)
      peak = std::max(peak, std::abs(expected[j]));
    ASSERT_NEAR(out[k], expected[k] * std::min(1.0, 16384.0 / peak), 2e-5 * 20000.0) << k;
  }
}

}  // namespace
}  // namespace quorl::test
