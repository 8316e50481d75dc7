// The sound card classes on a real sound server and in real time: the one test of that kind.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <numbers>
#include <thread>

#include "platform/linux/sound/RtAudioSoundSystem.h"
#include "platform/linux/system/LinuxEventQueue.h"
#include "platform/virtual/VirtualDialogs.h"
#include "sound/FindDevice.h"
#include "sound/PulseServer.h"
#include "sound/QUORLDX8.h"
#include "sound/SoundBench.h"

namespace quorl {
namespace {

using std::chrono::milliseconds;
using SteadyClock = std::chrono::steady_clock;

constexpr double kRate = 48000, kCarrier = 12000, kTone = 1000;
constexpr std::size_t kWindow = 480;  // ten cycles of the tone

// An AM station on the IF, in both channels.
void WriteStation(const std::string& path, int seconds) {
  std::vector<std::int16_t> samples;
  for (int i = 0; i < seconds * static_cast<int>(kRate); ++i) {
    const double turn = 2 * std::numbers::pi * i / kRate;
    const double value = 8000 * (1 + 0.5 * std::sin(kTone * turn)) * std::cos(kCarrier * turn + 0.7);
    samples.insert(samples.end(), 2, static_cast<std::int16_t>(std::lrint(value)));
  }
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(samples.data()), static_cast<std::streamsize>(samples.size() * 2));
}

std::vector<std::int16_t> ReadSamples(const std::string& path) {
  std::vector<std::int16_t> samples(std::filesystem::file_size(path) / 2);
  std::ifstream(path, std::ios::binary)
      .read(reinterpret_cast<char*>(samples.data()), static_cast<std::streamsize>(samples.size() * 2));
  return samples;
}

// Amplitude and phase of the tone in n samples that begin at number `first`.
std::complex<double> ToneIn(const std::int16_t* samples, std::size_t n, std::int64_t first) {
  std::complex<double> sum = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const double turn = 2 * std::numbers::pi * kTone *
                        static_cast<double>((first + static_cast<std::int64_t>(i)) % 48) / kRate;
    sum += static_cast<double>(samples[i]) * std::polar(1.0, -turn);
  }
  return sum * 2.0 / static_cast<double>(n);
}

double PhaseBetween(std::complex<double> a, std::complex<double> b) {
  return std::abs(std::arg(a * std::conj(b)));
}

// An envelope detector: a carrier period is four samples, so the mean of four magnitudes is the envelope.
class EnvelopePump : public SoundEvents {
 public:
  void SoundCard_DataReady(std::int16_t* samplesI, std::int16_t*, std::int32_t n) override {
    ++Blocks;
    for (std::int32_t i = 0; i < n; ++i) {
      std::rotate(last_.begin(), last_.begin() + 1, last_.end());
      last_.back() = std::abs(samplesI[i]);
      const double envelope = (last_[0] + last_[1] + last_[2] + last_[3]) / 4.0;
      mean_ += (envelope - mean_) * 0.001;
      samplesI[i] = static_cast<std::int16_t>(std::lrint(std::clamp(envelope - mean_, -30000.0, 30000.0)));
    }
    Tones.push_back(ToneIn(samplesI, static_cast<std::size_t>(n), (Blocks - 1) * kBlock));
    Sound->Output(samplesI, samplesI);
  }
  void SoundCard_DataOut(std::int16_t*, std::int32_t, std::int32_t) override { ++BlocksOut; }

  QUORLDX8* Sound = nullptr;
  std::int64_t Blocks = 0, BlocksOut = 0;
  std::vector<std::complex<double>> Tones;  // of each block, its phase counted from the first block

 private:
  std::array<int, 4> last_{};
  double mean_ = 0;
};

struct Listener {
  Listener() : System(Queue, "pulse"), Sound(System, Queue, Dialogs, Pump), Form(Sound) {
    Pump.Sound = &Sound;
    System.OnDeviceLost([this](const Error& error) { Lost.push_back(error.Text); });
    SetUpMono(Sound);
    Sound.RefreshDevices();
    std::vector<std::string> names;
    Sound.GetCapDeviceNames(names);
    Sound.CurrentCaptureDevice = FindDevice(names, "Monitor of Antenna", 1);
    Sound.GetPlayDeviceNames(names);
    Sound.CurrentPlaybackDevice = FindDevice(names, "Loud Speaker", 1);
  }
  void Run(milliseconds time) { LongestTurn(time); }
  // The longest that the thread was kept from its queue.
  milliseconds LongestTurn(milliseconds time) {
    auto last = SteadyClock::now(), begin = last;
    SteadyClock::duration longest{};
    while (last - begin < time) {
      Queue.Wait(milliseconds(5));
      const auto now = SteadyClock::now();
      longest = std::max(longest, now - last);
      last = now;
    }
    return std::chrono::duration_cast<milliseconds>(longest);
  }
  // Tried again and again: a server that was let go has first to answer what piled up.
  bool StartsInTime() {
    for (const auto end = SteadyClock::now() + std::chrono::seconds(5); SteadyClock::now() < end;) {
      if (!Sound.StartSound()) return true;
      Run(milliseconds(50));
    }
    return false;
  }
  // A null sink takes up to two seconds to find its pace.
  bool RunUntilBlock(std::int64_t block) { return RunUntil(Pump.Blocks, block); }
  bool RunUntil(const std::int64_t& count, std::int64_t atLeast) {
    for (const auto end = SteadyClock::now() + std::chrono::seconds(5); SteadyClock::now() < end;) {
      Queue.Wait(milliseconds(5));
      if (count >= atLeast) return true;
    }
    return false;
  }
  LinuxEventQueue Queue;
  VirtualDialogs Dialogs;
  RtAudioSoundSystem System;
  EnvelopePump Pump;
  QUORLDX8 Sound;
  frmDX8Events Form;
  std::vector<std::string> Lost;
};

// Windows from the first to the last with the tone; true for those that have it.
std::vector<bool> FindTone(const std::vector<std::int16_t>& heard, std::size_t& firstSample) {
  std::vector<bool> windows;
  for (std::size_t i = 0; i + kWindow <= heard.size(); i += kWindow) {
    windows.push_back(std::abs(ToneIn(heard.data() + i, kWindow, static_cast<std::int64_t>(i))) > 1000);
  }
  const auto first = std::find(windows.begin(), windows.end(), true);
  firstSample = static_cast<std::size_t>(first - windows.begin()) * kWindow;
  while (!windows.empty() && !windows.back()) windows.pop_back();
  if (windows.empty()) return windows;
  windows.erase(windows.begin(), windows.begin() + static_cast<std::ptrdiff_t>(firstSample / kWindow));
  return windows;
}

int CountGaps(const std::vector<bool>& windows) {
  int gaps = 0;
  for (std::size_t i = 1; i < windows.size(); ++i) gaps += windows[i - 1] && !windows[i] ? 1 : 0;
  return gaps;
}

class Pulse : public testing::Test {
 protected:
  void SetUp() override {
    if (!PulseServer::IsInstalled())
      GTEST_SKIP() << "skipped: no pulseaudio (with pactl, pacat, parec) on this machine";
    server_.emplace();
    ASSERT_TRUE(server_->IsReady()) << std::ifstream(server_->Path("log")).rdbuf();
    WriteStation(server_->Path("station"), 12);
  }
  // The station on the antenna, and what comes out of the loudspeaker into the file "heard".
  void StartStation() {
    const std::vector<std::string> format = {"--format=s16le", "--rate=48000", "--raw", "--latency-msec=50"};
    std::vector<std::string> play = {"pacat", "--playback", "--device=antenna", "--channels=2"};
    std::vector<std::string> record = {"parec", "--device=speaker.monitor", "--channels=1"};
    for (auto* command : {&play, &record}) command->insert(command->end(), format.begin(), format.end());
    play.push_back(server_->Path("station"));
    record.push_back(server_->Path("heard"));
    recorder_.emplace(record, server_->Path("record"));
    station_.emplace(play, server_->Path("play"));
  }
  std::vector<std::int16_t> StopStation() {
    recorder_.reset();
    station_.reset();
    return ReadSamples(server_->Path("heard"));
  }
  std::optional<PulseServer> server_;
  std::optional<Child> station_, recorder_;
};

// Blocks of the captured stream that do not follow on the one before them; the first second is the station's
// start.
int BrokenBlocks(const std::vector<std::complex<double>>& tones) {
  int broken = 0;
  for (std::size_t i = 24; i < tones.size(); ++i)
    broken += PhaseBetween(tones[i], tones[i - 1]) > 0.3 ? 1 : 0;
  return broken;
}

// A server that has just started has no device, and no usual one among them.
TEST_F(Pulse, AServerWithoutDevicesHasNoneUntilTheyCome) {
  Listener listener;
  EXPECT_FALSE(listener.System.CaptureDeviceNames().empty());
  ASSERT_EQ(server_->Control({"unload-module", "module-null-sink"}), 0);
  EXPECT_TRUE(listener.System.CaptureDeviceNames().empty());
  EXPECT_TRUE(listener.System.PlaybackDeviceNames().empty());
  EXPECT_TRUE(listener.Sound.StartSound());
  ASSERT_EQ(server_->Control({"load-module", "module-null-sink", "sink_name=antenna", "rate=48000",
                              "sink_properties=device.description=Antenna"}),
            0);
  EXPECT_EQ(listener.System.CaptureDeviceNames(), std::vector<std::string>{"Monitor of Antenna"});
}

TEST_F(Pulse, ListensAndPlaysWithoutOneUnderrunAndAStallIsOneGap) {
  Listener listener;
  StartStation();
  ASSERT_FALSE(listener.Sound.StartSound());
  ASSERT_TRUE(listener.RunUntilBlock(10));
  listener.Run(milliseconds(3000));
  EXPECT_EQ(listener.System.Statistics().Underruns, 0);
  const std::int64_t blocksBefore = listener.Pump.Blocks;

  std::this_thread::sleep_for(milliseconds(500));  // the stall
  listener.Run(milliseconds(2000));
  const SoundStatistics statistics = listener.System.Statistics();
  EXPECT_EQ(statistics.Underruns, 1);
  EXPECT_EQ(statistics.Overruns, 0);
  EXPECT_EQ(listener.Sound.Recoveries().Overruns + listener.Sound.Recoveries().Starvations, 0);
  EXPECT_EQ(statistics.CapturedBlocks, listener.Pump.Blocks);
  EXPECT_NEAR(static_cast<double>(listener.Pump.Blocks - blocksBefore), 2.5 * kRate / kBlock, 3.0);
  EXPECT_EQ(BrokenBlocks(listener.Pump.Tones), 0);
  EXPECT_TRUE(listener.Lost.empty());

  const auto heard = StopStation();
  std::size_t first = 0;
  const auto windows = FindTone(heard, first);
  ASSERT_GT(windows.size(), 450U);
  EXPECT_EQ(CountGaps(windows), 1);
  const auto silent = static_cast<double>(std::count(windows.begin(), windows.end(), false));
  EXPECT_GT(silent, 20);  // of 50 windows of stall the ring's own blocks cover some
  EXPECT_LT(silent, 50);
  // The delay is the same before and after the gap.
  const auto toneAt = [&](std::size_t window) {
    const std::size_t at = first + window * kWindow;
    return ToneIn(heard.data() + at, kWindow, static_cast<std::int64_t>(at));
  };
  const auto gap =
      static_cast<std::size_t>(std::find(windows.begin(), windows.end(), false) - windows.begin());
  EXPECT_LT(PhaseBetween(toneAt(gap - 20), toneAt(windows.size() - 5)), 0.3);
}

TEST_F(Pulse, AVanishedLoudspeakerIsToldOnceAndStopAndStartReopensIt) {
  // With this the server moves a stream to another sink, as on a desktop.
  ASSERT_EQ(server_->Control({"load-module", "module-rescue-streams"}), 0);
  Listener listener;
  ASSERT_FALSE(listener.Sound.StartSound());
  ASSERT_TRUE(listener.RunUntilBlock(6));
  const std::int64_t blocks = listener.Pump.Blocks;
  ASSERT_EQ(server_->Control({"unload-module", "2"}), 0);
  listener.Run(milliseconds(3000));
  EXPECT_EQ(listener.Lost, std::vector<std::string>{"The sound device \"Loud Speaker\" has vanished"});
  EXPECT_GT(listener.Pump.Blocks, blocks + 50);  // still listening

  listener.Sound.StopSound();
  ASSERT_EQ(server_->Control({"load-module", "module-null-sink", "sink_name=speaker", "rate=48000",
                              "sink_properties=\"device.description='Loud Speaker'\""}),
            0);
  ASSERT_FALSE(listener.Sound.StartSound());
  ASSERT_TRUE(listener.RunUntil(listener.Pump.BlocksOut, listener.Pump.BlocksOut + 10));
  EXPECT_EQ(listener.Lost.size(), 1U);
  EXPECT_EQ(listener.Sound.LastErr, 0);
}

TEST_F(Pulse, AServerThatHangsIsToldAndHoldsNobodyUp) {
  Listener listener;
  ASSERT_FALSE(listener.Sound.StartSound());
  ASSERT_TRUE(listener.RunUntilBlock(6));
  server_->Hang(true);
  milliseconds turn{};
  const auto hung = SteadyClock::now();
  while (listener.Lost.empty() && SteadyClock::now() - hung < milliseconds(4500))
    turn = std::max(turn, listener.LongestTurn(milliseconds(100)));
  EXPECT_LT(turn, milliseconds(500));
  ASSERT_EQ(listener.Lost.size(), 1U);
  EXPECT_NE(listener.Lost[0].find("does not answer"), std::string::npos) << listener.Lost[0];
  const auto begin = SteadyClock::now();
  listener.Sound.StopSound();
  listener.Sound.ReleaseDevices();
  listener.Sound.RefreshDevices();
  const Failure failure = listener.Sound.StartSound();
  const auto refusal = std::chrono::duration_cast<milliseconds>(SteadyClock::now() - begin);
  ASSERT_TRUE(failure);
  EXPECT_NE(failure->Text.find("the sound server does not answer"), std::string::npos) << failure->Text;
  EXPECT_LT(refusal, milliseconds(2500));
  std::cout << "held up: " << turn.count() << " ms while it hangs, " << refusal.count() << " ms by a start\n";

  server_->Hang(false);
  ASSERT_TRUE(listener.StartsInTime());
  EXPECT_TRUE(listener.RunUntilBlock(listener.Pump.Blocks + 10));
  EXPECT_EQ(listener.Lost.size(), 1U);
}

TEST_F(Pulse, ARestartedServerIsOneMessageToo) {
  Listener listener;
  ASSERT_FALSE(listener.Sound.StartSound());
  ASSERT_TRUE(listener.RunUntilBlock(6));
  Failure refusal;
  auto speaker = listener.System.CreatePlaybackBuffer(
      listener.Sound.CurrentPlaybackDevice, {48000, 16, 1}, 16384, [](int) {}, refusal);
  ASSERT_TRUE(speaker);
  ASSERT_FALSE(speaker->Play());
  const std::int64_t blocks = listener.System.Statistics().CapturedBlocks;
  const auto begin = SteadyClock::now();
  server_.reset();
  const std::chrono::duration<double> end = SteadyClock::now() - begin;
  listener.Run(milliseconds(700));
  EXPECT_EQ(listener.Lost.size(), 1U);
  // Nothing comes from nowhere.
  EXPECT_LE(static_cast<double>(listener.System.Statistics().CapturedBlocks - blocks),
            end.count() * kRate / kBlock + 2.0);
  listener.Sound.StopSound();
  EXPECT_TRUE(listener.Sound.StartSound());
  listener.Sound.StopSound();
  EXPECT_EQ(listener.Lost.size(), 1U);
  // Nobody waits for a loudspeaker's answer: each start that it refuses is told.
  EXPECT_TRUE(speaker->Play());
  EXPECT_EQ(listener.Lost.size(), 2U);
  EXPECT_TRUE(speaker->Play());
  EXPECT_EQ(listener.Lost.size(), 3U);
  speaker.reset();

  server_.emplace();
  ASSERT_TRUE(server_->IsReady());
  ASSERT_FALSE(listener.Sound.StartSound());
  EXPECT_TRUE(listener.RunUntilBlock(listener.Pump.Blocks + 3));
}

}  // namespace
}  // namespace quorl
