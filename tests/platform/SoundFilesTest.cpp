#include "platform/SoundFiles.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <string>
#include <vector>

#include "platform/linux/media/SndfileSoundFiles.h"
#include "platform/virtual/VirtualFiles.h"

namespace quorl {
namespace {

const SoundFileForm kFlac{SoundFileKind::Flac, 1, 48000, "", "", ""};

std::vector<std::int16_t> Tone(int frames, int channels, double hertz, int rate) {
  std::vector<std::int16_t> samples;
  for (int i = 0; i < frames; ++i) {
    for (int channel = 0; channel < channels; ++channel) {
      const double turn = 2.0 * std::numbers::pi * hertz * (channel + 1) * i / rate;
      samples.push_back(static_cast<std::int16_t>(std::lround(20000.0 * std::sin(turn))));
    }
  }
  return samples;
}

class SoundFilesTest : public testing::Test {
 protected:
  Failure Put(const std::string& path, const SoundFileForm& form, const std::vector<std::int16_t>& samples) {
    Failure failure;
    auto writer = media_.Create(path, form, failure);
    const int frames = static_cast<int>(samples.size()) / form.Channels;
    for (int done = 0; done < frames && !failure; done += 1000) {
      failure = writer->Write(samples.data() + done * form.Channels, std::min(1000, frames - done));
    }
    return failure ? failure : writer->Commit();
  }

  VirtualFiles files_;
  SndfileSoundFiles media_{files_};
};

TEST_F(SoundFilesTest, WhatIsWrittenIsReadAgainWithItsTags) {
  for (const SoundFileKind kind : {SoundFileKind::Wav, SoundFileKind::Flac}) {
    for (const int rate : {3000, 48000}) {
      for (const int channels : {1, 2}) {
        SCOPED_TRACE(std::to_string(rate) + " Hz, channels " + std::to_string(channels));
        const std::vector<std::int16_t> samples = Tone(4321, channels, 440.0, rate);
        const SoundFileForm form{kind, channels, rate, "7205 kHz", "a comment", "2026-11-23 14:05:09"};
        const Failure fault = Put("a.snd", form, samples);
        ASSERT_FALSE(fault) << fault->Text;
        EXPECT_EQ(files_.List("", ".new"), std::vector<std::string>());
        Failure failure;
        const std::string bytes = files_.Read("a.snd", failure).value();
        for (const std::string& tag : {form.Title, form.Comment, form.Date})
          EXPECT_NE(bytes.find(tag), std::string::npos) << tag;

        auto reader = media_.Open("a.snd", failure);
        ASSERT_TRUE(reader) << failure->Text;
        EXPECT_EQ(reader->Channels(), channels);
        EXPECT_EQ(reader->SampleRate(), rate);
        EXPECT_EQ(reader->Frames(), 4321);
        std::vector<float> read(samples.size() + 100);
        ASSERT_EQ(reader->Read(read.data(), 4321 + 50, failure), 4321);
        EXPECT_FALSE(failure);
        for (std::size_t i = 0; i < samples.size(); ++i)
          ASSERT_EQ(read[i] * 32768.0f, static_cast<float>(samples[i])) << i;
      }
    }
  }
}

TEST_F(SoundFilesTest, WhatCannotBeOpenedIsToldInOneLine) {
  ASSERT_FALSE(Put("good.flac", kFlac, Tone(30000, 1, 440.0, 48000)));
  Failure failure;
  const std::string flac = files_.Read("good.flac", failure).value();
  files_.Put("empty", "");
  files_.Put("text", "no sound at all, but long enough for every header that there is in the world");
  files_.Put("head", flac.substr(0, 20));
  files_.Put("folder/a", "");
  files_.PutPipe("pipe", flac);
  struct Case {
    const char* Name;
    const char* Told;
  };
  for (const Case& bad :
       {Case{"empty", "is empty"}, Case{"text", "sound file, such as"}, Case{"head", "sound file, such as"},
        Case{"folder", "directory"}, Case{"gone", "No such file"}, Case{"pipe", "a pipe or device"}}) {
    failure.reset();
    EXPECT_FALSE(media_.Open(bad.Name, failure));
    ASSERT_TRUE(failure) << bad.Name;
    EXPECT_NE(failure->Text.find(bad.Name), std::string::npos) << failure->Text;
    EXPECT_NE(failure->Text.find(bad.Told), std::string::npos) << failure->Text;
    EXPECT_EQ(failure->Text.find('\n'), std::string::npos) << failure->Text;
  }
}

TEST_F(SoundFilesTest, ReadErrorsAndLostSoundAreTold) {
  ASSERT_FALSE(Put("a.flac", kFlac, Tone(200000, 1, 440.0, 48000)));
  Failure failure;
  std::string bytes = files_.Read("a.flac", failure).value();
  std::vector<float> read(200000);
  {
    auto reader = media_.Open("a.flac", failure);
    ASSERT_TRUE(reader);
    EXPECT_EQ(reader->Read(read.data(), 1000, failure), 1000);
    files_.Fail(FileOperation::Read, Error{EIO, "the disk is broken"});
    EXPECT_LT(reader->Read(read.data(), 199000, failure), 199000);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->Code, EIO);
    files_.ClearFailures();
  }
  files_.Put("a.flac", bytes.substr(0, bytes.size() / 2));
  auto reader = media_.Open("a.flac", failure);
  ASSERT_TRUE(reader);
  EXPECT_EQ(reader->Frames(), 200000);
  EXPECT_LT(reader->Read(read.data(), 200000, failure), 200000);
}

TEST_F(SoundFilesTest, FullDiskLeavesNothingBehind) {
  for (const SoundFileKind kind : {SoundFileKind::Wav, SoundFileKind::Flac}) {
    for (const std::int64_t space : {0, 30, 5000, 20000}) {
      files_.SetSpace(space);
      std::vector<std::int16_t> noise(20000);
      for (std::int16_t& sample : noise) sample = static_cast<std::int16_t>(std::rand());
      const Failure failure = Put("a.snd", {kind, 1, 48000, "title", "", ""}, noise);
      ASSERT_TRUE(failure) << space;
      EXPECT_EQ(failure->Code, ENOSPC) << failure->Text;
      EXPECT_NE(failure->Text.find("a.snd"), std::string::npos) << failure->Text;
      EXPECT_FALSE(files_.Exists("a.snd"));
      EXPECT_EQ(files_.List("", ".new"), std::vector<std::string>());
    }
  }
}

TEST_F(SoundFilesTest, RatesAreConvertedWithoutLosingATone) {
  for (const int rate : {8000, 22050, 44100, 48000, 96000, 192000}) {
    SCOPED_TRACE(rate);
    Failure failure;
    auto converter = media_.Convert(rate, 48000, failure);
    ASSERT_TRUE(converter) << failure->Text;
    std::vector<float> in, out;
    for (int i = 0; i < rate; ++i)
      in.push_back(0.5f * static_cast<float>(std::sin(2.0 * std::numbers::pi * 1000.0 * i / rate)));
    const std::span<const float> all = in;
    for (std::size_t at = 0; at < all.size(); at += 777) {
      const std::span<const float> part = all.subspan(at, std::min<std::size_t>(777, all.size() - at));
      ASSERT_FALSE(converter->Convert(part, at + part.size() == all.size(), out));
    }
    EXPECT_NEAR(static_cast<double>(out.size()), 48000.0, 1.0);
    double worst = 0.0;
    for (std::size_t i = 1000; i + 1000 < out.size(); ++i) {
      const double wanted =
          0.5 * std::sin(2.0 * std::numbers::pi * 1000.0 * static_cast<double>(i) / 48000.0);
      worst = std::max(worst, std::fabs(static_cast<double>(out[i]) - wanted));
    }
    EXPECT_LT(worst, 1e-3);
  }
  Failure failure;
  EXPECT_FALSE(media_.Convert(0, 48000, failure));
  ASSERT_TRUE(failure);
  EXPECT_NE(failure->Text.find("256 times"), std::string::npos) << failure->Text;
}

}  // namespace
}  // namespace quorl
