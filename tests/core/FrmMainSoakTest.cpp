// Hours of random gestures while the machine around the radio fails in every way that it can, with kills and
// restarts in between. Nothing that was kept is lost, and the sound comes back each time.
//
// A day: QUORL_SOAK_HOURS=24 QUORL_SOAK_SEED=7 test_core --gtest_filter='FrmMainSoak.*', or `make soak`.
#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include "core/Monkey.h"
#include "recorder/files/LittleEndian.h"
#include "recorder/files/RecordingHeader.h"
#include "recorder/journal/RecordingParts.h"

namespace quorl::test {
namespace {

constexpr std::int64_t kRoomy = std::int64_t{1} << 40;
constexpr double kSoundBack = 5.0;    // seconds that the sound may take, once its cause has gone
constexpr double kMostGrowth = 16.0;  // MB that a process may gain behind its first half hour
constexpr std::int64_t kMostLost = 4800 + SamplesPerEvent;  // samples of a killed recording
#ifdef __SANITIZE_ADDRESS__
constexpr double kUsualHours = 0.05;
#else
constexpr double kUsualHours = 0.25;
#endif
constexpr char kKept[] = "music/kept.wav";

double ResidentMegabytes() {
  malloc_trim(0);
  std::FILE* file = std::fopen("/proc/self/statm", "r");
  long total = 0, resident = 0;
  if (file != nullptr) {
    if (std::fscanf(file, "%ld %ld", &total, &resident) != 2) resident = 0;
    std::fclose(file);
  }
  return static_cast<double>(resident) * 4096.0 / 1048576.0;
}

// Keys that are stored for others to read; a start takes none of them.
bool IsOnlyTold(const std::string& line) {
  static constexpr std::array kKeys{"AGCON=",
                                    "AGCMode=",
                                    "AGCDelayTime=",
                                    "AGCSmoothTime=",
                                    "AGCAttack=",
                                    "AGCDecay=",
                                    "FilterHi=",
                                    "FilterLo=",
                                    "IFFilterActive=",
                                    "IFFilterSettings(",
                                    "CurrentIFFilterMode=",
                                    "NB=",
                                    "NBOn=",
                                    "NotchType=",
                                    "NotchMode=",
                                    "NotchActive=",
                                    "NotchMirror=",
                                    "MusicMode=",
                                    "NotchCentre=",
                                    "NotchWidth=",
                                    "OutputAttenuation=",
                                    "OutputVolume=",
                                    "CurrentFilterMode=",
                                    "CurrentDemodMode=",
                                    "LastTunedFrequency=",
                                    "RecordFileName=",
                                    "WavSamplingRate=",
                                    "SpectrumWidth=",
                                    "TriggerChn=",
                                    "ShowNotch="};
  // A scope that comes up in XY mode shows both channels.
  if (line.find("Chn1.Enabled=") != std::string::npos || line.find("Chn2.Enabled=") != std::string::npos)
    return true;
  return std::any_of(kKeys.begin(), kKeys.end(), [&](const char* key) { return line.starts_with(key); });
}

// A start recalls the memory that is active. It holds whole hertz, takes 0 for none, and a preset stays
// active for 500 Hz around its own frequency.
bool IsRecalled(const std::string& before, const std::string& after) {
  const std::size_t value = before.find('=') + 1;
  if (before.substr(0, value) != after.substr(0, value)) return false;
  // The scope's direction follows the side of the oscillator.
  if (before.starts_with("HiSideLo=") || before.starts_with("ReverseSpectrum=")) return true;
  if (!before.starts_with("TunedFrequency=") && !before.starts_with("FreqCurrent=")) return false;
  const long stored = std::atol(before.c_str() + value), found = std::atol(after.c_str() + value);
  // A clock is kept in whole hertz, and the end of the range moves with it.
  return stored == 0 || std::labs(stored - found) <= (before[0] == 'T' ? 5000 : 1);
}

// The lines in which two texts differ, one of each after the other, but for what is only told.
std::string Differences(const std::string& before, const std::string& after) {
  std::istringstream one(before), other(after);
  std::string differences, a, b;
  while (static_cast<bool>(std::getline(one, a)) | static_cast<bool>(std::getline(other, b))) {
    if (a != b && !IsRecalled(a, b) &&
        !(IsOnlyTold(a) && a.substr(0, a.find('=')) == b.substr(0, b.find('='))))
      differences += a + " | " + b + "\n";
    a.clear();
    b.clear();
  }
  return differences;
}

using Random = std::mt19937;
std::int64_t Below(Random& random, std::int64_t n) {
  return std::uniform_int_distribution<std::int64_t>(0, n - 1)(random);
}

// What goes wrong outside, one thing at a time, and comes right again. By the queue, so that it happens in
// the middle of gestures and of the waits that they may lead to.
class Troubles {
 public:
  Troubles(FrameRig& rig, Random& random)
      : rig_(rig), random_(random), timer_(rig.Queue.CreateTimer([this] { Tick(); })) {
    timer_->Start(std::chrono::seconds(1));
  }

  int Count = 0;
  bool Ended = false;  // one has come right since this was cleared
  std::string Name;    // of the last one

  bool IsPresent() const { return present_; }
  void End() {
    if (!std::exchange(present_, false)) return;
    kAll[last_].End(*this);
    Ended = true;
  }

 private:
  struct Trouble {
    const char* Name;
    void (*Begin)(Troubles&);
    void (*End)(Troubles&);
  };
  static const std::vector<Trouble> kAll;

  void Tick() {
    if (present_ && --left_ <= 0) return End();
    if (present_ || Below(random_, 20) != 0) return;
    last_ = static_cast<std::size_t>(Below(random_, static_cast<std::int64_t>(kAll.size())));
    Name = kAll[last_].Name;
    left_ = static_cast<int>(1 + Below(random_, 20));
    present_ = true;
    ++Count;
    kAll[last_].Begin(*this);
  }
  std::string Device() {
    static constexpr std::array kDevices{"Line In", "Microphone", "Loudspeaker", "Headset"};
    return kDevices[static_cast<std::size_t>(Below(random_, kDevices.size()))];
  }
  void FailSomeOperation() {
    static constexpr std::array kOperations{
        FileOperation::Read,   FileOperation::Replace, FileOperation::Open,
        FileOperation::Write,  FileOperation::Sync,    FileOperation::Truncate,
        FileOperation::Rename, FileOperation::Remove,  FileOperation::MakeDirectory};
    rig_.Storage.Fail(kOperations[static_cast<std::size_t>(Below(random_, kOperations.size()))],
                      Error{5, "Input/output error"});
  }

  FrameRig& rig_;
  Random& random_;
  std::unique_ptr<QueueTimer> timer_;
  std::size_t last_ = 0;
  bool present_ = false;
  int left_ = 0;  // seconds
  std::string device_;
};

const std::vector<Troubles::Trouble> Troubles::kAll{
    {"the sound server hangs", [](Troubles& t) { t.rig_.Sound.SetStalled(true); },
     [](Troubles& t) { t.rig_.Sound.SetStalled(false); }},
    {"a sound device goes and comes", [](Troubles& t) { t.rig_.Sound.Unplug(t.device_ = t.Device()); },
     [](Troubles& t) { t.rig_.Sound.Plug(t.device_); }},
    {"no sound device can be opened",
     [](Troubles& t) {
       t.rig_.Sound.RefuseCapture(Error{16, "the device is in use"});
       t.rig_.Sound.RefusePlayback(Error{16, "the device is in use"});
       t.rig_.Sound.Unplug(t.device_ = t.Device());
     },
     [](Troubles& t) {
       t.rig_.Sound.RefuseCapture({});
       t.rig_.Sound.RefusePlayback({});
       t.rig_.Sound.Plug(t.device_);
     }},
    {"the clocks of the sound cards drift",
     [](Troubles& t) { t.rig_.Sound.SetPlaybackDrift(static_cast<double>(Below(t.random_, 400)) - 200.0); },
     [](Troubles& t) { t.rig_.Sound.SetPlaybackDrift(0.0); }},
    {"the serial port is pulled out", [](Troubles& t) { t.rig_.Serial.Unplug(); },
     [](Troubles& t) { t.rig_.Serial.Plug(); }},
    {"no port can be opened",
     [](Troubles& t) {
       t.rig_.Serial.FailOpen(Error{13, "permission denied"});
       t.rig_.Printer.FailCheck(Error{13, "permission denied"});
     },
     [](Troubles& t) {
       t.rig_.Serial.FailOpen({});
       t.rig_.Printer.FailCheck({});
     }},
    {"the disk is full",
     [](Troubles& t) { t.rig_.Storage.SetSpace(t.rig_.Storage.Used() + Below(t.random_, 400000)); },
     [](Troubles& t) { t.rig_.Storage.SetSpace(kRoomy); }},
    {"a write is cut short", [](Troubles& t) { t.rig_.Storage.WriteShort(Below(t.random_, 5000)); },
     [](Troubles& t) { t.rig_.Storage.ClearFailures(); }},
    {"the disk fails", [](Troubles& t) { t.FailSomeOperation(); },
     [](Troubles& t) { t.rig_.Storage.ClearFailures(); }},
    {"the disk stands still", [](Troubles& t) { t.rig_.Worker.Stall(); },
     [](Troubles& t) { t.rig_.Worker.Resume(); }},
    {"the disk is slow",
     [](Troubles& t) { t.rig_.Worker.SetCallTime(std::chrono::milliseconds(50 + Below(t.random_, 1000))); },
     [](Troubles& t) { t.rig_.Worker.SetCallTime(std::chrono::milliseconds(1)); }},
    {"the machine is busy",
     [](Troubles& t) { t.rig_.Clock.Advance(std::chrono::milliseconds(Below(t.random_, 3000))); },
     [](Troubles&) {}},
    {"no decoder starts, and one that runs ends",
     [](Troubles& t) {
       t.rig_.Programs.StartFailure = Error{2, "no such program"};
       t.rig_.Programs.Running.clear();
       t.rig_.Programs.Children.clear();
     },
     [](Troubles& t) { t.rig_.Programs.StartFailure = {}; }},
};

class Soak {
 public:
  Soak(unsigned seed, bool tells) : tells_(tells), random_(seed) {
    rig_.Storage.Put("plans/Amateur.bpl", kTinyPlan);
    rig_.Storage.MakeDirectory("music");
    rig_.Storage.SetSpace(kRoomy);
    rig_.KeepAudio = false;
    fresh_ = rig_.StoredText();
  }

  std::int64_t Gestures = 0, Blocks = 0;
  int Troubled = 0, Kills = 0, Restarts = 0, Recordings = 0, Told = 0;

  void Run(double hours) {
    const std::int64_t start = rig_.Clock.Microseconds();
    const auto elapsed = [&] { return static_cast<double>(rig_.Clock.Microseconds() - start) / 3600e6; };
    double nextTell = 1.0, before = 0.0;
    PutFresh();
    while (elapsed() < hours && !testing::Test::HasFailure()) {
      Live();
      if (before == 0.0 && elapsed() > 0.5) before = OwnMegabytes();
      if (elapsed() < nextTell) continue;
      nextTell += 1.0;
      Tell(elapsed());
    }
    End();
    Tell(elapsed());
    if (before > 0.0) ExpectNoGrowth(before);
  }

 private:
  // One life of the program, and how it ends.
  void Live() {
    if (!StartUp()) return;
    Play(60.0 + static_cast<double>(Below(random_, 600)));
    if (testing::Test::HasFailure()) return;
    switch (Below(random_, 4)) {
      case 0:
        return EndAndCompare();
      case 1:
        return KillAndCompare();
      case 2:
        return RecordAndKill();
      default:
        EndAndCompare();
        PutFresh();
    }
  }

  bool StartUp() {
    rig_.Boxes = VirtualDialogs();
    rig_.Programs.Starts.clear();
    const bool started = rig_.Start();
    EXPECT_TRUE(started);
    if (!started) return false;
    surfaces_.LendTo(rig_);
    ++Restarts;
    return true;
  }
  void End() {
    Told += static_cast<int>(rig_.Boxes.Messages.size() + rig_.Boxes.Notices.size());
    Blocks += std::exchange(rig_.Blocks, 0);
    rig_.Stop();
    for (const std::string& name : rig_.Storage.List("music", "")) rig_.Storage.Remove("music/" + name);
  }
  void PutFresh() { rig_.Storage.Put(FrameRig::kSettings, rig_.Storage.LastWritten = fresh_); }

  void Play(double seconds) {
    Monkey monkey(rig_, static_cast<unsigned>(random_()));
    Troubles troubles(rig_, random_);
    for (const std::int64_t end = rig_.Clock.Microseconds() + static_cast<std::int64_t>(seconds * 1e6);
         rig_.Clock.Microseconds() < end && !testing::Test::HasFailure();) {
      Answer(monkey);
      monkey.Gesture();
      rig_.Run(monkey.Pause());
      ++Gestures;
      ASSERT_EQ(Fault(rig_), "") << "gesture " << Gestures << " on " << monkey.last << "; " << troubles.Name;
      if (std::exchange(troubles.Ended, false)) ExpectSound(troubles);
      if (!rig_.Frame().IsOn() && monkey.Chance(20)) rig_.Click("optPwr(0)");
    }
    troubles.End();
    Troubled += troubles.Count;
  }
  // Most boxes are declined.
  void Answer(Monkey& monkey) {
    rig_.Boxes.MessageAnswers.clear();
    rig_.Boxes.SaveFileAnswers.clear();
    if (monkey.Chance(4)) rig_.Boxes.MessageAnswers.push_back(MessageAnswer::Yes);
    if (monkey.Chance(4)) rig_.Boxes.SaveFileAnswers.push_back("music/" + std::to_string(Below(random_, 5)));
  }

  // Unless the next trouble comes meanwhile.
  void ExpectSound(const Troubles& troubles) {
    const std::string trouble = troubles.Name;
    for (double waited = 0.0; waited < kSoundBack; waited += 1.0) {
      const std::int64_t blocks = rig_.Blocks;
      if (!rig_.Frame().IsOn()) rig_.Click("optPwr(0)");
      rig_.Run(1.0);
      if (troubles.IsPresent()) return;
      if (rig_.Blocks >= blocks + 20 || rig_.Frame().Decoder().IsSoundReleased()) return;
      if (waited >= 2.0) rig_.Click("optPwr(1)");
    }
    ADD_FAILURE() << "no sound " << kSoundBack << " s after the end of: " << trouble
                  << (rig_.Frame().IsOn() ? ", on" : ", off");
  }

  // A start and an end in which nothing is done change nothing that was kept.
  void EndAndCompare() {
    rig_.Run(1.0);  // the memories follow the last gesture
    End();
    const std::string settings = rig_.StoredText(), plan = Plan();
    ASSERT_TRUE(StartUp());
    rig_.Run(0.1);  // the plan is there, and no sub-band has followed the radio yet
    End();
    EXPECT_EQ(Differences(settings, rig_.StoredText()), "");
    EXPECT_EQ(Differences(plan, Plan()), "");
    ExpectNoLeftovers();
  }
  // Its names and frequencies; the sub-band that is open follows the rest of the radio from its start on.
  std::string Plan() {
    Failure failure;
    std::istringstream lines(rig_.Storage.Read("plans/Amateur.bpl", failure).value_or(""));
    std::string kept;
    for (std::string line; std::getline(lines, line);) {
      for (const char* key : {"[", "Caption=", "Description=", "Freq", "ActivePreset=", "When="})
        if (line.starts_with(key)) kept += line + "\n";
    }
    return kept;
  }
  void ExpectNoLeftovers() {
    for (const char* folder : {"config", "plans", "music"}) {
      EXPECT_EQ(rig_.Storage.List(folder, ".new"), std::vector<std::string>{}) << folder;
    }
  }

  // At any moment: the settings are those of the last save.
  void KillAndCompare() {
    rig_.Run(static_cast<double>(Below(random_, 3000)) / 1000.0);
    const auto disk = rig_.Storage.TakeImage();
    const std::string kept = rig_.Storage.LastWritten;
    Kill(disk);
    EXPECT_EQ(Differences(kept, rig_.StoredText()), "");
    rig_.Storage.LastWritten = kept;
  }
  void Kill(const std::map<std::string, std::string>& disk) {
    End();
    rig_.Storage.PutBack(disk);
    ++Kills;
  }

  // A recording of a radio that is tuned meanwhile, on a disk that may be slow; in every other one the parts
  // are small. What was heard stands in it but for the last tenth of a second.
  void RecordAndKill() {
    End();
    RecordingParts("plans").RemoveAll(rig_.Storage);
    PutFresh();
    ASSERT_TRUE(StartUp());
    rig_.Run(1.0);
    if (Below(random_, 2) == 0) rig_.Frame().WavFile().MostFileBytes = 1500000;
    rig_.Worker.SetCallTime(std::chrono::milliseconds(1 + Below(random_, 10)));
    rig_.Click("optPwr(0)");
    rig_.Run(1.0);
    rig_.KeepAudio = true;
    rig_.Heard.clear();
    rig_.Press("cmdWavCtls", 0);
    for (std::int64_t steps = Below(random_, 400); steps > 0; --steps) {
      rig_.Wheel(IndexedName("lbl7Seg", static_cast<int>(3 + Below(random_, 4))),
                 Below(random_, 2) == 0 ? 1 : -1);
      rig_.Run(static_cast<double>(Below(random_, 200)) / 1000.0);
    }
    ASSERT_TRUE(rig_.Frame().WavFile().IsRecording());
    const std::vector<std::int16_t> heard = std::exchange(rig_.Heard, {});
    const auto disk = rig_.Storage.TakeImage();
    rig_.KeepAudio = false;
    rig_.Worker.SetCallTime(std::chrono::milliseconds(1));
    Kill(disk);
    Recover(heard);
  }
  void Recover(const std::vector<std::int16_t>& heard) {
    ASSERT_TRUE(StartUp());
    rig_.Boxes.MessageAnswers = {MessageAnswer::Yes};
    rig_.Run(3.0);
    const std::int32_t parts = rig_.Frame().WavFile().PartsToSave();
    rig_.Set("txtRecordFileName", kKept);
    rig_.Press("cmdWavCtls", 8);
    std::vector<std::int16_t> saved;
    for (std::int32_t part = 1; part <= parts; ++part) AppendSamples(PartName(kKept, part), saved);
    ExpectSame(heard, saved);
    ++Recordings;
    End();
    ExpectNoLeftovers();
    EXPECT_FALSE(rig_.Storage.Exists("plans/~QUORLWAV.TMP") || rig_.Storage.Exists("plans/~QUORLWAV.JNL"));
  }
  void AppendSamples(const std::string& path, std::vector<std::int16_t>& samples) {
    Failure failure;
    const auto file = rig_.Storage.Open(path, OpenMode::Read, failure);
    ASSERT_TRUE(file) << path;
    const Recording recording = ReadRecording(*file).Own.value_or(Recording{});
    std::vector<unsigned char> bytes(static_cast<std::size_t>(recording.DataBytes));
    file->ReadAt(recording.Format.DataAt(), bytes.data(), recording.DataBytes, failure);
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2)
      samples.push_back(static_cast<std::int16_t>(GetU16(bytes.data() + at)));
  }
  // What was recorded begins within the first blocks of what was heard, as the file is made beside the sound.
  static void ExpectSame(const std::vector<std::int16_t>& heard, const std::vector<std::int16_t>& saved) {
    for (std::size_t from = 0; from < 25 * SamplesPerEvent && from <= heard.size(); from += SamplesPerEvent) {
      const std::size_t count = std::min(saved.size(), heard.size() - from);
      if (count < saved.size() ||
          !std::equal(saved.begin(), saved.end(), heard.begin() + static_cast<long>(from)))
        continue;
      EXPECT_LE(static_cast<std::int64_t>(heard.size() - from - saved.size()), kMostLost);
      return;
    }
    ADD_FAILURE() << "of " << heard.size() << " samples heard, " << saved.size() << " saved are others";
  }

  // Without what the disk, which is memory, holds.
  double OwnMegabytes() const {
    return ResidentMegabytes() - static_cast<double>(rig_.Storage.Held()) / 1048576.0;
  }
  void Tell(double hours) {
    if (!tells_) return;
    std::printf(
        "%6.2f h  %8lld gestures  %9lld blocks  %5d faults outside  %5d told  %4d starts  %3d kills  "
        "%3d recordings mended  %.1f MB\n",
        hours, static_cast<long long>(Gestures), static_cast<long long>(Blocks), Troubled, Told, Restarts,
        Kills, Recordings, OwnMegabytes());
    std::fflush(stdout);
  }
  static void Report(double before, double after) {
    std::printf("Memory: %.1f MB after half an hour, %.1f MB at the end\n", before, after);
  }
  void ExpectNoGrowth(double before) {
    const double after = OwnMegabytes();
    if (tells_) Report(before, after);
#ifndef __SANITIZE_ADDRESS__  // which keeps what was freed, and finds leaks itself
    EXPECT_LT(after, before + kMostGrowth);
#endif
  }

  const bool tells_;
  Random random_;
  Surfaces surfaces_;
  FrameRig rig_;
  std::string fresh_;
};

// A few minutes with every build; see above for a day.
TEST(FrmMainSoak, GesturesWhileTheMachineFails) {
  const char* hours = std::getenv("QUORL_SOAK_HOURS");
  const char* seed = std::getenv("QUORL_SOAK_SEED");
  Soak soak(seed != nullptr ? static_cast<unsigned>(std::strtoul(seed, nullptr, 10)) : 1, hours != nullptr);
  soak.Run(hours != nullptr ? std::atof(hours) : kUsualHours);
  EXPECT_GT(soak.Blocks, 0);
  EXPECT_GT(soak.Troubled, 0);
}

}  // namespace
}  // namespace quorl::test
