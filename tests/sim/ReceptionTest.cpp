// The whole road: tuned frequency, wire, chip, board, receive chain, audio.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "receiver/Receiver.h"
#include "sim/Bench.h"
#include "sim/SimTestSupport.h"

namespace quorl {
namespace {

// Judged before the AGC: it would bring the noise of an empty frequency up to the level of a station.
class Radio {
 public:
  Radio(int model, std::unique_ptr<SimulatedBand> band, bool lowSide = false)
      : bench_(model, InterfaceType::Serial, std::move(band), lowSide),
        receiver_(bench_.Clock, sound_, recorder_, [] {}) {
    receiver_.Initialise();
    receiver_.Vars.SDRModelNo = model;
    receiver_.Vars.AGCON = false;
    receiver_.SetLowSideLO(lowSide);
    receiver_.SetBFO(0);
  }
  Receiver& Controls() { return receiver_; }
  Bench& Desk() { return bench_; }

  std::vector<double> Listen(std::int32_t dHz, std::int32_t mode, std::int32_t filterMode, double seconds) {
    bench_.Tune(dHz);
    receiver_.SetDemodMode(mode);
    receiver_.SetFilterMode(filterMode);
    receiver_.Housekeeping();
    std::vector<double> audio;
    std::array<std::int16_t, 2 * SamplesPerEvent> frames{};
    std::array<std::int16_t, SamplesPerEvent> left{}, right{};
    while (static_cast<double>(audio.size()) < seconds * 48000.0) {
      bench_.Board.Board().Render(frames.data(), SamplesPerEvent);
      for (std::size_t n = 0; n < SamplesPerEvent; ++n) {
        left[n] = frames[2 * n];
        right[n] = frames[2 * n + 1];
      }
      receiver_.Pump.SoundCard_DataReady(left.data(), right.data());
      receiver_.Housekeeping();
      audio.insert(audio.end(), left.begin(), left.end());
    }
    return audio;
  }

 private:
  NoSoundOutput sound_;
  NoRecorder recorder_;
  Bench bench_;
  Receiver receiver_;
};

// Loudness of the second half: the first one still holds what was tuned before.
double Loudness(const std::vector<double>& audio) {
  return RootMeanSquare(
      std::ranges::subrange(audio.begin() + static_cast<std::ptrdiff_t>(audio.size() / 2), audio.end()));
}

// Reads Morse from audio by the length of tones and gaps, a dot being `dotSeconds`. Knows the letters of the
// test.
std::string ReadMorse(const std::vector<double>& audio, double dotSeconds) {
  const std::vector<std::pair<std::string, char>> letters = {
      {"-.-.", 'C'}, {"--.-", 'Q'}, {"-..", 'D'},  {".", 'E'},   {"-..-", 'X'},  {"..---", '2'},
      {".-..", 'L'}, {".-", 'A'},   {"-...", 'B'}, {"-.-", 'K'}, {"--..--", ','}};
  constexpr std::size_t kStep = 240;  // 5 ms
  std::vector<double> envelope;
  for (std::size_t at = 0; at + kStep <= audio.size(); at += kStep) {
    const auto from = audio.begin() + static_cast<std::ptrdiff_t>(at);
    envelope.push_back(RootMeanSquare(std::ranges::subrange(from, from + kStep)));
  }
  const double threshold = 0.4 * *std::max_element(envelope.begin(), envelope.end());
  const double dot = dotSeconds * 48000.0 / kStep;
  std::string text, code;
  std::size_t run = 0;
  for (std::size_t n = 1; n < envelope.size(); ++n) {
    ++run;
    const bool was = envelope[n - 1] > threshold, is = envelope[n] > threshold;
    if (was && !is) code += static_cast<double>(run) > 2.0 * dot ? '-' : '.';
    if (!was && is && static_cast<double>(run) > 2.0 * dot) {
      const auto letter =
          std::find_if(letters.begin(), letters.end(), [&](const auto& l) { return l.first == code; });
      if (!code.empty()) text += letter == letters.end() ? '*' : letter->second;
      if (static_cast<double>(run) > 5.0 * dot) text += ' ';
      code.clear();
    }
    if (was != is) run = 0;
  }
  return text;
}

TEST(Reception, MorseCanBeReadAndIsGoneThreeKilohertzAway) {
  const std::string station = StationText("7018", "cw", "text = CQ DE QX2LAB K\nwpm = 20\npause_s = 1\n");
  for (const int model : {0, 1}) {
    Radio radio(model, BandOf(station, "noise_dbm_hz = -152\n"));
    const std::vector<double> audio = radio.Listen(70176000, DemodMode::USB, 1, 25.0);
    const std::string text = ReadMorse(audio, 1.2 / 20.0);
    EXPECT_NE(text.find(" CQ DE QX2LAB K "), std::string::npos) << "model " << model << ": " << text;
    const std::vector<double> away = radio.Listen(70206000, DemodMode::USB, 1, 12.0);
    EXPECT_LT(Decibels(Loudness(away) / Loudness(audio)), -45.0) << "model " << model;
  }
}

TEST(Reception, VoicesComeOutInTheirOwnSidebandOnly) {
  const std::string stations = StationText("7050", "usb", "programme = speech welcome") +
                               StationText("7062", "lsb", "programme = speech qso-two");
  for (const int model : {0, 1}) {
    for (const bool lowSide : {false, true}) {
      Radio radio(model, SpeakingBandOf(stations), lowSide);
      const auto loudness = [&](std::int32_t dHz, std::int32_t mode) {
        radio.Desk().Board.Board().Seek(1.0);
        return Loudness(radio.Listen(dHz, mode, 2, 3.0));
      };
      const double upper = loudness(70500000, DemodMode::USB),
                   wrongUpper = loudness(70500000, DemodMode::LSB);
      const double lower = loudness(70620000, DemodMode::LSB),
                   wrongLower = loudness(70620000, DemodMode::USB);
      EXPECT_GT(std::min(upper, lower), 100.0);
      EXPECT_LT(Decibels(wrongUpper / upper), -40.0) << "model " << model << (lowSide ? " low" : " high");
      EXPECT_LT(Decibels(wrongLower / lower), -40.0) << "model " << model << (lowSide ? " low" : " high");
    }
  }
}

TEST(Reception, QuadratureBoardsGiveTheWantedSideband) {
  const std::string stations = StationText("7050", "usb", "programme = tone 1000 10") +
                               StationText("7050", "lsb", "programme = tone 1600 10");
  for (const int model : {2, 3}) {
    for (const bool lowSide : {false, true}) {
      Radio radio(model, BandOf(stations), lowSide);
      radio.Controls().SwitchIFFilter(true);
      radio.Controls().SetIFFilterMode(IFFilterMode::Track);
      const std::vector<double> audio = radio.Listen(70500000, DemodMode::USB, 2, 3.0);
      EXPECT_GT(LineAt(audio, {}, 1000.0), 1000.0) << "model " << model;
      EXPECT_LT(Decibels(LineAt(audio, {}, 1600.0) / LineAt(audio, {}, 1000.0)), -45.0)
          << "model " << model << (lowSide ? " low" : " high");
    }
  }
}

TEST(Reception, BroadcastFrequencyModulationAndTimeSignal) {
  const std::string stations = StationText("7205", "am", "programme = tone 1000 10\ndepth_percent = 50") +
                               StationText("29600", "fm", "programme = tone 800 10\ndeviation_hz = 2500") +
                               StationText("10000", "pips", "programme = pause 60\ntone_hz = 1200");
  for (const int model : {0, 2}) {
    Radio radio(model, BandOf(stations));
    const std::vector<double> am = radio.Listen(72050000, DemodMode::AM, 0, 3.0);
    const double tone = LineAt(am, {}, 1000.0);
    EXPECT_GT(tone, 500.0) << model;
    for (const double harmonic : {2000.0, 3000.0})
      EXPECT_LT(Decibels(LineAt(am, {}, harmonic) / tone), -50.0);

    const std::vector<double> fm = radio.Listen(296000000, DemodMode::FM, 0, 3.0);
    // The demodulator's folded phase bends the characteristic: the deviation of 2.5 kHz has its second
    // harmonic 28 dB down.
    for (const double other : {400.0, 1600.0, 2400.0})
      EXPECT_LT(Decibels(LineAt(fm, {}, other) / LineAt(fm, {}, 800.0)), -26.0) << model << " " << other;

    radio.Listen(100000000, DemodMode::AM, 0, 0.5);
    radio.Desk().Board.Board().Seek(60.0 + 9.95);
    const std::vector<double> pips = radio.Listen(100000000, DemodMode::AM, 0, 2.0);
    std::vector<double> tenths;
    for (std::size_t at = 0; at + 4800 <= pips.size(); at += 4800) {
      const auto from = pips.begin() + static_cast<std::ptrdiff_t>(at);
      tenths.push_back(RootMeanSquare(std::ranges::subrange(from, from + 4800)));
    }
    std::sort(tenths.begin(), tenths.end());
    EXPECT_GT(tenths[18], 20.0 * tenths[10]) << "two short pips in two seconds, silence else";
  }
}

TEST(Reception, AClockErrorShiftsTheDial) {
  Radio radio(0, BandOf(StationText("7051", "carrier")));
  radio.Desk().Board.Chip().SetClockError(5.0);
  const std::vector<double> audio = radio.Listen(70500000, DemodMode::USB, 3, 2.0);
  // 52.05 MHz and 5 millionths: the dial shows 260.25 Hz too little.
  EXPECT_GT(LineAt(audio, {}, 1000.0 - 260.25), 0.5 * 3276.7);
}

TEST(Reception, TheDemoHasSomethingAtEachOfItsStations) {
  Failure failure;
  BandDefinition band;
  ASSERT_FALSE(ParseStations(DemoFiles().Read("demo/stations.ini", failure).value(), "f", band));
  EXPECT_GE(band.Stations.size(), 40U);
  Radio radio(0, DemoBand());
  const double empty = Loudness(radio.Listen(65000000, DemodMode::USB, 2, 2.0));
  double last = 0.0;
  for (const StationDefinition& station : band.Stations) {
    if (station.FrequencyKhz == last) continue;
    last = station.FrequencyKhz;
    const bool lower = station.Mode == StationMode::Lsb;
    const bool side = lower || station.Mode == StationMode::Usb || station.Mode == StationMode::Data;
    // Carriers are heard as a tone of 1 kHz.
    const double khz = station.FrequencyKhz - (side ? 0.0 : 1.0);
    radio.Desk().Board.Board().Seek(0.0);
    const double loudness = Loudness(radio.Listen(static_cast<std::int32_t>(std::lround(khz * 10000.0)),
                                                  lower ? DemodMode::LSB : DemodMode::USB, 2, 1.4));
    EXPECT_GT(loudness, 3.0 * empty) << station.Name;
  }
}

}  // namespace
}  // namespace quorl
