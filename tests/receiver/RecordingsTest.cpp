// Real signals off the air, put on the IF: each comes out right in the mode that belongs to it.
//
// The recordings are no part of the project. They are looked for in QUORL_RECORDINGS, then beside the
// checkout; where they are absent the tests say so and skip.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "platform/linux/system/LinuxFiles.h"
#include "receiver/ChainRig.h"
#include "recorder/files/WavReader.h"

namespace quorl::test {
namespace {

std::filesystem::path Folder() {
  const char* set = std::getenv("QUORL_RECORDINGS");
  return set != nullptr ? std::filesystem::path(set)
                        : std::filesystem::path(QUORL_SOURCE_DIR).parent_path() / "shared" / "recordings";
}

struct Recording {
  std::vector<std::int16_t> Left, Right;
};

Recording Load(const std::string& name) {
  Failure failure;
  const auto reader = WavReader::Open(LinuxFiles(), (Folder() / name).string(), WavNeeds{}, failure);
  Recording recording;
  if (!reader) return recording;
  const auto channels = static_cast<std::size_t>(reader->Channels());
  std::vector<std::int16_t> interleaved(2 * SamplesPerEvent);
  for (int got = SamplesPerEvent; got == SamplesPerEvent;) {
    got = reader->Read(interleaved.data(), SamplesPerEvent, failure);
    for (std::size_t k = 0; k < static_cast<std::size_t>(got); ++k) {
      recording.Left.push_back(interleaved[k * channels]);
      recording.Right.push_back(interleaved[k * channels + channels - 1]);
    }
  }
  return recording;
}

#define LOAD_OR_SKIP(recording, name)     \
  const Recording recording = Load(name); \
  if (recording.Left.empty()) GTEST_SKIP() << "no recording " << (Folder() / name).string()

// The recording through the rig, as heard: 16-bit audio after AGC and volume.
SampleBuffer Play(ChainRig& rig, const Recording& recording) {
  SampleBuffer audio;
  for (std::size_t at = 0; at + SamplesPerEvent <= recording.Left.size(); at += SamplesPerEvent) {
    std::copy_n(&recording.Left[at], SamplesPerEvent, rig.I.begin());
    std::copy_n(&recording.Right[at], SamplesPerEvent, rig.Q.begin());
    rig.Step();
    audio.insert(audio.end(), rig.I.begin(), rig.I.end());
  }
  return audio;
}

void SwitchAGCOn(ChainRig& rig, std::int32_t preset = AGCPreset::Normal) {
  rig.Radio.Vars.AGCON = true;
  rig.Radio.Agc.ApplyPreset(preset);
  rig.Radio.Agc.FillDelayLine();
}

std::span<const float> Part(const SampleBuffer& audio, std::size_t at, std::size_t count) {
  return std::span<const float>(audio).subspan(at, std::min(count, audio.size() - at));
}

// Text of on-off keying at `hertz`, dots of `dot` samples.
std::string DecodeMorse(const SampleBuffer& audio, double hertz, std::size_t dot) {
  static const std::pair<const char*, char> kCodes[] = {
      {".-", 'A'},   {"-...", 'B'}, {"-.-.", 'C'},  {"-..", 'D'},  {".", 'E'},    {"..-.", 'F'},
      {"--.", 'G'},  {"....", 'H'}, {"..", 'I'},    {".---", 'J'}, {"-.-", 'K'},  {".-..", 'L'},
      {"--", 'M'},   {"-.", 'N'},   {"---", 'O'},   {".--.", 'P'}, {"--.-", 'Q'}, {".-.", 'R'},
      {"...", 'S'},  {"-", 'T'},    {"..-", 'U'},   {"...-", 'V'}, {".--", 'W'},  {"-..-", 'X'},
      {"-.--", 'Y'}, {"--..", 'Z'}, {"...--", '3'}, {"-----", '0'}};
  const std::size_t step = dot / 8;
  std::vector<double> level;
  for (std::size_t at = 0; at + dot / 2 <= audio.size(); at += step) {
    level.push_back(LineAt(Part(audio, at, dot / 2), hertz));
  }
  std::vector<double> sorted = level;
  std::ranges::sort(sorted);
  const double threshold = 0.5 * sorted[sorted.size() * 95 / 100];
  std::string text, code;
  bool on = false;
  std::size_t run = 0;
  const auto endOfRun = [&] {
    if (on) {
      code += run < 16 ? '.' : '-';  // two dots
    } else if (run >= 16) {
      for (const auto& [pattern, letter] : kCodes) {
        if (code == pattern) text += letter;
      }
      if (run >= 40) text += ' ';
      code.clear();
    }
  };
  for (const double v : level) {
    if ((v > threshold) != on) {
      endOfRun();
      on = !on;
      run = 0;
    }
    ++run;
  }
  on = false;
  run = 100;
  endOfRun();
  return text;
}

TEST(Recordings, MorseReads) {
  LOAD_OR_SKIP(recording, "cw-usb-high.wav");
  ChainRig rig(SDRModel::DRT1, DemodMode::USB);
  rig.SetFilter(200, 800);
  const std::string text = DecodeMorse(Play(rig, recording), 501.0, 1920);  // 30 words a minute: 40 ms
  int calls = 0;
  for (std::size_t at = 0; (at = text.find("CQ DX DE 3Y0J X", at)) != std::string::npos; ++at) ++calls;
  EXPECT_EQ(calls, 3) << text;
}

TEST(Recordings, TimeSignalTicksEverySecond) {
  LOAD_OR_SKIP(recording, "dcf77-am.wav");
  // The carrier's envelope ahead of the audio filter, which takes the direct component away.
  ChainRig rig(SDRModel::DRT1, DemodMode::DRM);
  const SampleBuffer passed = Play(rig, recording);
  constexpr std::size_t kStep = 480;  // 10 ms
  std::vector<double> envelope;
  for (std::size_t at = 0; at + kStep <= passed.size(); at += kStep) {
    envelope.push_back(LineAt(Part(passed, at, kStep), 12000.0));
  }
  std::vector<double> sorted = envelope;
  std::ranges::sort(sorted);
  const double full = sorted[sorted.size() * 3 / 4];
  // AM audio shows each fall and rise of the carrier as a pulse.
  ChainRig am(SDRModel::DRT1, DemodMode::AM);
  const SampleBuffer audio = Play(am, recording);
  std::vector<double> falls;
  int shorts = 0, longs = 0;
  for (std::size_t k = 1; k < envelope.size(); ++k) {
    if (envelope[k - 1] < 0.5 * full || envelope[k] >= 0.5 * full) continue;
    std::size_t end = k;
    while (end < envelope.size() && envelope[end] < 0.5 * full) ++end;
    if (end == envelope.size()) break;
    falls.push_back(double(k) * 0.01);
    shorts += end - k < 15;
    longs += end - k >= 15;
    EXPECT_NEAR(double(end - k), end - k < 15 ? 10.0 : 20.0, 4.0) << k;
    EXPECT_LT(sorted[sorted.size() / 50] / full, 0.25);
    // Splitter and audio filter bring the edge some 2046 samples later.
    const auto at = static_cast<std::size_t>(k * kStep);
    const double pulse = RootMeanSquare(Part(audio, at + 1000, 2400));
    const double rest = RootMeanSquare(Part(audio, std::min(at + 24000, audio.size() - 2400), 2400));
    EXPECT_GT(pulse, 1.5 * rest) << k;
  }
  ASSERT_GT(falls.size(), 20U);
  EXPECT_GT(shorts, 3);
  EXPECT_GT(longs, 3);
  for (std::size_t k = 1; k < falls.size(); ++k) {
    const double gap = falls[k] - falls[k - 1];
    EXPECT_NEAR(gap, gap > 1.5 ? 2.0 : 1.0, 0.035);  // the last second of a minute has no mark
  }
}

TEST(Recordings, FadingSpeechComesOutAtSteadyLevel) {
  LOAD_OR_SKIP(recording, "am-speech-fading.wav");
  // Spread of the peaks of whole seconds, once the line no longer holds what it was filled with at start.
  const auto spread = [&](std::int32_t preset, std::size_t from) {
    ChainRig rig(SDRModel::DRT1, DemodMode::AM);
    if (preset != AGCPreset::Off) SwitchAGCOn(rig, preset);
    const SampleBuffer audio = Play(rig, recording);
    double loudest = 0.0, softest = 1e9;
    for (std::size_t at = from * 48000; at + 24000 <= audio.size(); at += 48000) {
      double peak = 0.0;
      for (const float x : Part(audio, at, 48000)) peak = std::max(peak, std::abs(double(x)));
      loudest = std::max(loudest, peak);
      softest = std::min(softest, peak);
    }
    EXPECT_LE(loudest, 16384.0);
    return Decibels(loudest / softest);
  };
  const double faded = spread(AGCPreset::Off, 3);
  EXPECT_GT(faded, 15.0);
  EXPECT_LT(spread(AGCPreset::Fast, 3), 7.0);
  EXPECT_LT(spread(AGCPreset::Normal, 5), faded - 3.0);
}

TEST(Recordings, DigitalRadioPassesFlat) {
  LOAD_OR_SKIP(recording, "drm-if.wav");
  ChainRig rig(SDRModel::ElektorDRM, DemodMode::DRM);
  const SampleBuffer out = Play(rig, recording);
  for (std::size_t k = 0; k < out.size(); ++k) ASSERT_EQ(out[k], recording.Left[k]) << k;
}

TEST(Recordings, TeletypeShiftsBetweenMarkAndSpace) {
  LOAD_OR_SKIP(recording, "rtty-usb-low.wav");
  ChainRig rig(SDRModel::DRT1, DemodMode::USB, true);
  rig.SetFilter(1400, 2600);
  SwitchAGCOn(rig);
  const SampleBuffer audio = Play(rig, recording);
  // In every bit of 20 ms one of the tones stands well above the other; both have their share.
  int marks = 0, spaces = 0, unclear = 0;
  for (std::size_t at = 96000; at + 960 <= audio.size(); at += 960) {
    const double ratio =
        Decibels(LineAt(Part(audio, at, 960), 1775.0) / LineAt(Part(audio, at, 960), 2225.0));
    marks += ratio > 6.0;
    spaces += ratio < -6.0;
    unclear += std::abs(ratio) <= 6.0;
  }
  EXPECT_GT(marks, 200);
  EXPECT_GT(spaces, 200);
  EXPECT_LT(unclear, (marks + spaces) / 3);  // spans that lie across a change of bits among them
}

TEST(Recordings, DigitalTextStandsInItsBandAlone) {
  for (const auto& [name, lowSide] :
       {std::pair{"ft8-busy-usb-low.wav", true}, {"ft8-quiet-usb-high.wav", false}}) {
    LOAD_OR_SKIP(recording, name);
    ChainRig rig(SDRModel::DRT1, DemodMode::USB, lowSide), wrong(SDRModel::DRT1, DemodMode::LSB, lowSide);
    rig.SetFilter(200, 3000);
    wrong.SetFilter(200, 3000);
    const SampleBuffer audio = Play(rig, recording), other = Play(wrong, recording);
    EXPECT_GT(RootMeanSquare(Part(audio, 48000, audio.size())),
              1.5 * RootMeanSquare(Part(other, 48000, other.size())))
        << name;
  }
}

}  // namespace
}  // namespace quorl::test
