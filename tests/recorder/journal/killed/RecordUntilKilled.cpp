// Records in real time until somebody kills it: record_until_killed FOLDER PROGRESS-FILE
#include <fcntl.h>
#include <sys/mman.h>

#include <algorithm>
#include <chrono>
#include <new>

#include "KnownRecording.h"
#include "platform/linux/system/LinuxClock.h"
#include "platform/linux/system/LinuxEventQueue.h"
#include "platform/linux/system/LinuxFileWorker.h"
#include "platform/linux/system/LinuxFiles.h"
#include "recorder/journal/SketchRecorder.h"

namespace {

using Known = quorl::KnownRecording;

class Feeding {
 public:
  Feeding(quorl::SketchRecorder& recorder, quorl::KilledProgress& progress)
      : recorder_(recorder), progress_(progress) {}

  // Feeds a block where one is due: never faster than sound comes, also where the machine was busy.
  void At(std::int64_t microseconds) {
    if (microseconds < due_) return;
    FeedBlock();
    due_ = std::max(due_, microseconds - kLate) + kBlockTime;
  }

 private:
  static constexpr std::int64_t kBlockTime = Known::Block * std::int64_t{1'000'000} / 48000, kLate = 5000;

  void FeedBlock() {
    const std::int64_t block = fed_ / Known::Block;
    if (fed_ == Known::PartSamples) recorder_.BeginPart();
    if (block % Known::BlocksATuning == 0 && block > 0) recorder_.Tune(Known::FreqAt(block));
    std::vector<std::int16_t> samples(Known::Block);
    for (std::int16_t& sample : samples) sample = Known::Sample(fed_++);
    progress_.Fed = fed_;
    recorder_.Feed(samples);
  }

  quorl::SketchRecorder& recorder_;
  quorl::KilledProgress& progress_;
  std::int64_t fed_ = 0, due_ = 0;
};

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) return 2;
  const int file = open(arguments[2], O_RDWR);
  void* const shared =
      mmap(nullptr, sizeof(quorl::KilledProgress), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  if (shared == MAP_FAILED) return 1;
  auto* const progress = new (shared) quorl::KilledProgress();
  quorl::LinuxFiles files;
  quorl::LinuxEventQueue queue;
  quorl::LinuxFileWorker worker(queue);
  quorl::LinuxClock clock;
  quorl::SketchRecorder recorder(files, worker, quorl::RecordingParts(arguments[1]), Known::Head());
  recorder.Open(Known::FreqAt(0));
  Feeding feeding(recorder, *progress);
  for (;;) {
    queue.Wait(std::chrono::milliseconds(5));
    feeding.At(clock.Microseconds());
  }
}
