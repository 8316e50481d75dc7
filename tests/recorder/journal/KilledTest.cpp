// A program that records is killed, again and again, on the real disk.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <memory>
#include <random>
#include <thread>

#include "killed/KnownRecording.h"
#include "platform/ScratchDirectory.h"
#include "platform/linux/system/LinuxFiles.h"
#include "recorder/files/WavReader.h"
#include "recorder/journal/Recovery.h"

namespace quorl {
namespace {

using Known = KnownRecording;

class Victim {
 public:
  explicit Victim(std::chrono::milliseconds life) : dies_(std::chrono::steady_clock::now() + life) {
    const std::string progress = folder_.Path("progress");
    std::ofstream(progress) << std::string(sizeof(KilledProgress), '\0');
    const int file = open(progress.c_str(), O_RDWR);
    progress_ = static_cast<KilledProgress*>(
        mmap(nullptr, sizeof(KilledProgress), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0));
    close(file);
    pid_ = fork();
    if (pid_ != 0) return;
    execl(QUORL_RECORD_UNTIL_KILLED, QUORL_RECORD_UNTIL_KILLED, folder_.Path().c_str(), progress.c_str(),
          nullptr);
    _exit(127);
  }
  ~Victim() { munmap(progress_, sizeof(KilledProgress)); }

  // At its time, or so long behind the next block from then on.
  void Die(std::optional<std::chrono::microseconds> behindBlock) {
    std::this_thread::sleep_until(dies_);
    if (behindBlock) {
      for (const std::int64_t fed = Fed(); fed == Fed() && waitpid(pid_, nullptr, WNOHANG) == 0;) {
      }
      std::this_thread::sleep_for(*behindBlock);
    }
    kill(pid_, SIGKILL);
    int status = 0;
    waitpid(pid_, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status)) << "it ended by itself";
  }

  std::int64_t Fed() const { return progress_->Fed; }
  const std::string& Folder() const { return folder_.Path(); }

 private:
  ScratchDirectory folder_;
  std::chrono::steady_clock::time_point dies_;
  KilledProgress* progress_ = nullptr;
  pid_t pid_ = -1;
};

// Samples of the file, each of which must be the right one.
void CheckSamples(const LinuxFiles& files, const std::string& path, std::int64_t first, std::int64_t count) {
  Failure failure;
  const auto reader = WavReader::Open(files, path, {}, failure);
  ASSERT_TRUE(reader) << path;
  std::vector<std::int16_t> samples(static_cast<std::size_t>(count));
  ASSERT_EQ(reader->Read(samples.data(), static_cast<int>(count), failure), count);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    ASSERT_EQ(samples[i], Known::Sample(first + static_cast<std::int64_t>(i))) << path << ", sample " << i;
  }
}

void CheckLog(const Recording& recording, std::int64_t first) {
  ASSERT_FALSE(recording.Log.empty());
  const std::int64_t end = 44 + recording.DataBytes;
  for (std::size_t i = 0; i < recording.Log.size(); ++i) {
    const std::int64_t begins = std::max(first, Known::SampleOf(recording.Log[i].Freq));
    EXPECT_EQ(recording.Log[i].Start, std::min(44 + 2 * (begins - first), end));
    EXPECT_EQ(recording.Log[i].End, i + 1 < recording.Log.size() ? recording.Log[i + 1].Start : end + 1);
  }
  // The last record is the one that was in force in the end.
  EXPECT_GE(Known::SampleOf(recording.Log.back().Freq) + (Known::BlocksATuning + 1) * Known::Block,
            first + recording.Frames());
}

// Returns how many samples were recovered.
std::int64_t Recover(const std::string& folder) {
  LinuxFiles files;
  const FoundRecording mended = MendRecording(files, RecordingParts(folder));
  EXPECT_FALSE(mended.Fault);
  EXPECT_FALSE(mended.LogLost);
  std::int64_t first = 0;
  for (const std::string& path : mended.Files) {
    Failure failure;
    const auto file = files.Open(path, OpenMode::Read, failure);
    const RecordingRead read = ReadRecording(*file);
    EXPECT_TRUE(read.Own) << path;
    if (!read.Own) break;
    CheckSamples(files, path, first, read.Own->Frames());
    CheckLog(*read.Own, first);
    first += read.Own->Frames();
  }
  EXPECT_EQ(mended.Frames, first);
  return first;
}

TEST(Killed, AHundredRecordingsAreRecoveredWithin200Milliseconds) {
  std::mt19937 random(12);
  std::int64_t most = 0, all = 0;
  int whole = 0;
  for (int round = 0; round < 4; ++round) {
    std::vector<int> lives(25);
    for (int& life : lives) life = 20 + static_cast<int>(random() % 1600);
    std::sort(lives.begin(), lives.end());
    std::vector<std::unique_ptr<Victim>> victims;
    for (const int life : lives) victims.push_back(std::make_unique<Victim>(std::chrono::milliseconds(life)));
    for (std::size_t i = 0; i < victims.size(); ++i) {
      std::optional<std::chrono::microseconds> behindBlock;
      if (i % 2 == 1) behindBlock = std::chrono::microseconds(random() % 200);
      victims[i]->Die(behindBlock);
    }
    for (const auto& victim : victims) {
      const std::int64_t fed = victim->Fed(), missing = fed - Recover(victim->Folder());
      EXPECT_LE(missing, 48000 / 5) << fed << " samples were recorded";
      most = std::max(most, missing);
      all += fed;
      whole += missing <= 0 ? 1 : 0;
    }
  }
  EXPECT_GT(all, 48000 * 50) << "most of them recorded for a while";
  std::cout << "100 kills, " << static_cast<double>(all) / 48000 << " s recorded, " << whole
            << " without any loss, at most " << most * 1000 / 48000 << " ms missing\n";
}

}  // namespace
}  // namespace quorl
