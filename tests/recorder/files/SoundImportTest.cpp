#include "recorder/files/SoundImport.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <cmath>
#include <filesystem>
#include <functional>
#include <limits>
#include <numbers>
#include <random>

#include "platform/ScratchDirectory.h"
#include "platform/files/PostedJob.h"
#include "platform/linux/media/SndfileSoundFiles.h"
#include "platform/linux/system/LinuxFiles.h"
#include "platform/virtual/VirtualEventQueue.h"
#include "platform/virtual/VirtualFileWorker.h"
#include "platform/virtual/VirtualFiles.h"
#include "recorder/files/WavBytes.h"
#include "recorder/files/WavReader.h"

namespace quorl {
namespace {

using test::Chunk;
using test::FormatBody;
using test::Riff;
using test::SampleBytes;
using test::WavFile;

constexpr double kHertz = 997.0;

// The bytes of a sound file: `sample` of frame and channel, full scale being 1.0.
std::string SoundBytes(int format, int channels, int rate, int frames,
                       const std::function<float(int, int)>& sample) {
  const ScratchDirectory folder;
  const std::string path = folder.Path("sound");
  SF_INFO info{};
  info.channels = channels;
  info.samplerate = rate;
  info.format = format;
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  if (file == nullptr) throw std::runtime_error(sf_strerror(nullptr));
  std::vector<float> all;
  for (int frame = 0; frame < frames; ++frame) {
    for (int channel = 0; channel < channels; ++channel) all.push_back(sample(frame, channel));
  }
  sf_writef_float(file, all.data(), frames);
  sf_close(file);
  Failure failure;
  return LinuxFiles().Read(path, failure).value();
}

float ToneAt(int frame, int rate) {
  return 0.5f * static_cast<float>(std::sin(2.0 * std::numbers::pi * kHertz * frame / rate));
}

class SoundImportTest : public testing::Test {
 protected:
  Failure Import() {
    SoundImport job(files_, media_, "from", "to.wav");
    return Finish(job);
  }
  std::vector<std::int16_t> Result() {
    Failure failure;
    const auto reader = WavReader::Open(files_, "to.wav", WavNeeds{48000, 1}, failure);
    if (!reader) throw std::runtime_error(failure->Text);
    std::vector<std::int16_t> samples(static_cast<std::size_t>(*reader->Frames()));
    reader->Read(samples.data(), static_cast<int>(samples.size()), failure);
    return samples;
  }
  void ExpectNothingLeft() {
    EXPECT_FALSE(files_.Exists("to.wav"));
    EXPECT_EQ(files_.List("", ".new"), std::vector<std::string>());
  }

  VirtualFiles files_;
  SndfileSoundFiles media_{files_};
};

TEST_F(SoundImportTest, EveryMakeSoundsAsItDid) {
  struct Case {
    const char* Name;
    int Format, Channels, Rate;
    double Error;  // of a sample at most, full scale being 1
  };
  const Case cases[] = {{"8 bits", SF_FORMAT_WAV | SF_FORMAT_PCM_U8, 1, 48000, 0.01},
                        {"24 bits, three channels", SF_FORMAT_WAV | SF_FORMAT_PCM_24, 3, 48000, 1e-4},
                        {"floating point", SF_FORMAT_WAV | SF_FORMAT_FLOAT, 2, 44100, 1e-3},
                        {"extensible", SF_FORMAT_WAVEX | SF_FORMAT_PCM_16, 2, 96000, 1e-3},
                        {"telephone", SF_FORMAT_AU | SF_FORMAT_ULAW, 1, 8000, 0.05},
                        {"AIFF", SF_FORMAT_AIFF | SF_FORMAT_PCM_16, 1, 11025, 1e-3},
                        {"FLAC", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 2, 192000, 1e-3},
                        {"Ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS, 1, 48000, 0.05}};
  for (const Case& each : cases) {
    SCOPED_TRACE(each.Name);
    const int frames = each.Rate * 2 + 123;
    files_.Put("from", SoundBytes(each.Format, each.Channels, each.Rate, frames,
                                  [&](int frame, int) { return ToneAt(frame, each.Rate); }));
    const Failure failure = Import();
    ASSERT_FALSE(failure) << failure->Text;
    const std::vector<std::int16_t> got = Result();
    EXPECT_NEAR(static_cast<double>(got.size()), 48000.0 * frames / each.Rate, 1.0);
    double worst = 0.0;
    for (std::size_t i = 2000; i + 2000 < got.size(); ++i) {
      const double wanted = static_cast<double>(ToneAt(static_cast<int>(i), SoundImport::kRate));
      worst = std::max(worst, std::fabs(got[i] / 32768.0 - wanted));
    }
    EXPECT_LT(worst, each.Error);
  }
}

TEST_F(SoundImportTest, SamplesThatFitStayAsTheyAreAndChannelsBecomeTheirMean) {
  std::vector<std::int16_t> samples = {0, 1, -1, 32767, -32768, 256, -257, 12345};
  for (int i = 0; i < 200000; ++i) samples.push_back(static_cast<std::int16_t>(i * 7919));
  files_.Put("from", Riff(Chunk("odd ", "x") + Chunk("fmt ", FormatBody({})) + Chunk("LIST", "INFO") +
                          Chunk("data", SampleBytes(samples))));
  ASSERT_FALSE(Import());
  EXPECT_EQ(Result(), samples);
  files_.Put("from", WavFile({100, 200, -32768, -32768, 32767, 32767, 32767, -32767}, {1, 2}));
  ASSERT_FALSE(Import());
  EXPECT_EQ(Result(), (std::vector<std::int16_t>{150, -32768, 32767, 0}));
}

TEST_F(SoundImportTest, WhatIsTooLoudIsClippedAndWhatIsNoNumberIsSilent) {
  for (const int rate : {48000, 44100}) {
    files_.Put("from", SoundBytes(SF_FORMAT_WAV | SF_FORMAT_FLOAT, 1, rate, 4 * rate, [&](int frame, int) {
                 if (frame > 2 * rate && frame < 3 * rate) return std::numeric_limits<float>::quiet_NaN();
                 return frame == 10 ? 1e38f : 6.0f * ToneAt(frame, rate);
               }));
    ASSERT_FALSE(Import());
    const std::vector<std::int16_t> got = Result();
    for (std::size_t i = 1000; i < 90000; ++i) {
      const double wanted =
          std::clamp(6.0 * static_cast<double>(ToneAt(static_cast<int>(i), 48000)), -1.0, 1.0);
      ASSERT_NEAR(got[i] / 32768.0, wanted, 0.01) << i;
    }
    for (std::size_t i = 97000; i < 143000; ++i) ASSERT_EQ(got[i], 0) << i;
    EXPECT_NE(got[150001], 0);
  }
}

struct BadCase {
  std::string Bytes;
  const char* Told;
};

TEST_F(SoundImportTest, WhatCannotBeTakenIsToldInOneLineAndLeavesNothing) {
  const std::string data = Chunk("data", SampleBytes(std::vector<std::int16_t>(100)));
  const std::string good = WavFile(std::vector<std::int16_t>(100));
  const auto quiet = [](int frame, int) { return ToneAt(frame, 48000); };
  const std::string aiff = SoundBytes(SF_FORMAT_AIFF | SF_FORMAT_PCM_16, 1, 48000, 5000, quiet);
  const std::string flac = SoundBytes(SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 1, 48000, 200000, quiet);
  const auto withRate = [&](std::uint32_t rate) {
    return Riff(Chunk("fmt ", FormatBody({1, 1, rate})) + data);
  };
  const BadCase cases[] = {
      {"", "is empty"},
      {"this is a text and no sound at all", "a sound file, such as WAV"},
      {good.substr(0, 30), "ends within the format chunk"},
      {good.substr(0, 150), "the header promises 200 bytes of samples, the file ends after 106"},
      {Riff(Chunk("fmt ", FormatBody({1, 1, 8000})) + "data" + test::U32(0xFFFFFF00)),
       "the header promises 4294967040"},
      {aiff.substr(0, 4000), "a complete file is needed"},
      {flac.substr(0, flac.size() / 2), "is needed"},
      {withRate(0), "has 0 frames a second"},
      {withRate(1'000'000), "has 1000000 frames a second; 1000 to 768000 are needed"},
      {withRate(999), "has 999 frames a second"},
      {Riff(Chunk("fmt ", FormatBody({})) + Chunk("data", "")), "holds no sound"},
  };
  for (const BadCase& bad : cases) {
    SCOPED_TRACE(bad.Told);
    files_.Put("from", bad.Bytes);
    const Failure failure = Import();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->Text.rfind("from: ", 0), 0U) << failure->Text;
    EXPECT_NE(failure->Text.find(bad.Told), std::string::npos) << failure->Text;
    EXPECT_EQ(failure->Text.find('\n'), std::string::npos);
    ExpectNothingLeft();
  }
  files_.Put("folder/a", "");
  SoundImport folder(files_, media_, "folder", "to.wav");
  EXPECT_TRUE(Finish(folder));
  SoundImport gone(files_, media_, "gone", "to.wav");
  EXPECT_TRUE(Finish(gone));
  ExpectNothingLeft();
}

// Whatever is wrong with a file, it ends in one line or in a sound, soon.
TEST_F(SoundImportTest, SpoiledFilesEndInOneLineOrInASound) {
  std::mt19937 random(11);
  int sounds = 0, lines = 0;
  for (const int format : {SF_FORMAT_WAV | SF_FORMAT_PCM_16, SF_FORMAT_WAVEX | SF_FORMAT_FLOAT,
                           SF_FORMAT_AIFF | SF_FORMAT_PCM_16, SF_FORMAT_FLAC | SF_FORMAT_PCM_16,
                           SF_FORMAT_OGG | SF_FORMAT_VORBIS, SF_FORMAT_AU | SF_FORMAT_ULAW}) {
    const std::string good =
        SoundBytes(format, 1, 44100, 3000, [](int frame, int) { return ToneAt(frame, 44100); });
    for (int round = 0; round < 60; ++round) {
      std::string bytes = good;
      const std::size_t reach = round % 2 == 0 ? std::min<std::size_t>(100, good.size()) : good.size();
      for (int spoiled = 0; spoiled < 3; ++spoiled) bytes[random() % reach] = static_cast<char>(random());
      if (round % 5 == 0) bytes.resize(random() % bytes.size());
      files_.Put("from", bytes);
      const Failure failure = Import();
      if (failure) {
        ++lines;
        EXPECT_EQ(failure->Text.find('\n'), std::string::npos) << failure->Text;
        ExpectNothingLeft();
      } else {
        ++sounds;
        EXPECT_FALSE(Result().empty());
        EXPECT_FALSE(files_.Remove("to.wav"));
      }
    }
  }
  EXPECT_GT(lines, 50);
  EXPECT_GT(sounds, 50);
}

// Claims a length without having it.
class LongFiles : public SndfileSoundFiles {
 public:
  using SndfileSoundFiles::SndfileSoundFiles;
  std::unique_ptr<SoundFileReader> Open(const std::string&, Failure&) const override {
    class Reader : public SoundFileReader {
     public:
      explicit Reader(std::int64_t frames) : frames_(frames) {}
      int Channels() const override { return 1; }
      int SampleRate() const override { return 8000; }
      std::int64_t Frames() const override { return frames_; }
      int Read(float*, int, Failure&) override { return 0; }

     private:
      std::int64_t frames_;
    };
    return std::make_unique<Reader>(Frames);
  }
  std::int64_t Frames = 0;
};

TEST_F(SoundImportTest, SoundsLongerThanARecordingAreRefusedBeforehand) {
  LongFiles media(files_);
  files_.Put("from", "something");
  for (const std::int64_t frames :
       {std::int64_t{178956966}, std::int64_t{178956967}, std::int64_t{1} << 62}) {
    media.Frames = frames;
    SoundImport job(files_, media, "from", "to.wav");
    const Failure failure = job.Step();
    EXPECT_EQ(failure.has_value(), frames > 178956966) << frames;
    const std::string told = failure ? failure->Text : "at most 372 minutes";
    EXPECT_NE(told.find("at most 372 minutes"), std::string::npos) << told;
  }
}

class ImportBesideTest : public SoundImportTest {
 protected:
  ImportBesideTest() {
    files_.Put("from", SoundBytes(SF_FORMAT_WAV | SF_FORMAT_PCM_16, 2, 44100, 441000,
                                  [](int frame, int) { return ToneAt(frame, 44100); }));
    posted_.OnProgress = [this](double progress) { progress_.push_back(progress); };
    posted_.OnEnd = [this](const Failure& failure) {
      ++ends_;
      fault_ = failure;
    };
  }
  void Start() { posted_.Start(std::make_shared<SoundImport>(files_, media_, "from", "to.wav")); }
  void RunAll() {
    while (!queue_.IsIdle()) queue_.Wait(std::chrono::milliseconds(1));
  }
  void RunSteps(int steps) {
    for (int i = 0; i < steps; ++i) queue_.AdvanceBy(std::chrono::milliseconds(1));
  }

  VirtualClock clock_;
  VirtualEventQueue queue_{clock_};
  VirtualFileWorker worker_{queue_};
  PostedJob posted_{worker_};
  std::vector<double> progress_;
  int ends_ = 0;
  Failure fault_;
};

TEST_F(ImportBesideTest, GoesOnBesideOtherWorkAndTellsHowFarItIs) {
  Start();
  int others = 0;
  std::function<void()> other = [&] {
    ++others;
    if (posted_.IsRunning()) worker_.Run([] {}, other);
  };
  worker_.Run([] {}, other);
  RunAll();
  EXPECT_FALSE(posted_.IsRunning());
  EXPECT_EQ(ends_, 1);
  EXPECT_FALSE(fault_);
  EXPECT_NEAR(static_cast<double>(Result().size()), 480000.0, 1.0);
  ASSERT_GT(progress_.size(), 10U);
  EXPECT_TRUE(std::is_sorted(progress_.begin(), progress_.end()));
  EXPECT_EQ(progress_.front(), 0.0);
  EXPECT_EQ(progress_.back(), 1.0);
  EXPECT_GE(others, 10);
}

TEST_F(ImportBesideTest, StoppedAnywhereItLeavesNothingAndIsNotHeardOf) {
  for (int steps = 0; steps < 15; ++steps) {
    Start();
    RunSteps(steps);
    ASSERT_TRUE(posted_.IsRunning());
    worker_.Stall();
    posted_.Stop();
    EXPECT_FALSE(posted_.IsRunning());
    worker_.Resume();
    const std::size_t told = progress_.size();
    RunAll();
    EXPECT_EQ(ends_, 0);
    EXPECT_EQ(progress_.size(), told);
    ExpectNothingLeft();
  }
  Start();
  RunSteps(3);
  Start();
  RunAll();
  EXPECT_EQ(ends_, 1);
  EXPECT_NEAR(static_cast<double>(Result().size()), 480000.0, 1.0);
  EXPECT_EQ(files_.List("", ".new"), std::vector<std::string>());
}

TEST_F(ImportBesideTest, FaultsOnTheWayAreToldOnceAndLeaveNothing) {
  for (const bool reads : {false, true}) {
    Start();
    RunSteps(5);
    ASSERT_TRUE(posted_.IsRunning());
    if (reads) {
      files_.Fail(FileOperation::Read, Error{5, "from: the disk is broken"});
    } else {
      files_.SetSpace(0);
    }
    RunAll();
    files_.ClearFailures();
    ASSERT_TRUE(fault_);
    EXPECT_NE(fault_->Text.find(reads ? "from: the disk" : "to.wav"), std::string::npos) << fault_->Text;
    ExpectNothingLeft();
    files_.SetSpace(1 << 30);
  }
  EXPECT_EQ(ends_, 2);
}

}  // namespace
}  // namespace quorl
