// Records in real time until somebody kills it: record_until_killed FOLDER PROGRESS-FILE
#include <fcntl.h>
#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <iostream>
#include <new>

#include "KnownRecording.h"
#include "platform/linux/system/LinuxClock.h"
#include "platform/linux/system/LinuxEventQueue.h"
#include "platform/linux/system/LinuxFileWorker.h"
#include "platform/linux/system/LinuxFiles.h"
#include "platform/linux/system/TerminalDialogs.h"
#include "recorder/clsWavFile.h"

namespace {

using Known = quorl::KnownRecording;

class Feeding {
 public:
  Feeding(quorl::clsWavFile& deck, quorl::KilledProgress& progress) : deck_(deck), progress_(progress) {}

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
    deck_.NewLogRecord(Known::FreqAt(block));
    std::array<std::int16_t, Known::Block> samples;
    for (std::int16_t& sample : samples) sample = Known::Sample(fed_++);
    deck_.AddSamples(samples.data(), Known::Block);
    progress_.Fed = fed_;
  }

  quorl::clsWavFile& deck_;
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
  quorl::TerminalDialogs boxes(std::cerr);
  quorl::clsWavFile deck({files, worker, queue, boxes, clock}, arguments[1]);
  deck.RecBlockSizeInSamples = Known::Half;
  deck.MostFileBytes = Known::PartBytes;
  deck.TunedFrequency = [] { return Known::FreqAt(0); };
  deck.WriteNextBlockToDisk = [&] { queue.Post([&] { deck.WriteToDisk(); }); };
  if (deck.OpenRecording() != 0) return 1;
  Feeding feeding(deck, *progress);
  for (;;) {
    queue.Wait(std::chrono::milliseconds(5));
    feeding.At(clock.Microseconds());
  }
}
