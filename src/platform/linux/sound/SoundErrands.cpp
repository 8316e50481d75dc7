#include "platform/linux/sound/SoundErrands.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

namespace quorl {
namespace {

struct Errand {
  std::function<void()> Work;
  bool Done = false, GivenUp = false;
};

}  // namespace

struct SoundErrands::Line {
  std::mutex Mutex;
  std::condition_variable Moved;
  std::deque<std::shared_ptr<Errand>> Waiting;
  bool Busy = false, Hanging = false, Ended = false;

  void Work() {
    std::unique_lock lock(Mutex);
    for (;;) {
      Moved.wait(lock, [this] { return Ended || !Waiting.empty(); });
      if (Waiting.empty()) return;
      const std::shared_ptr<Errand> errand = std::exchange(Waiting.front(), nullptr);
      Waiting.pop_front();
      Busy = true;
      const bool wanted = !errand->GivenUp;
      lock.unlock();
      if (wanted) errand->Work();
      errand->Work = nullptr;  // what it holds goes here, too: that may take as long
      lock.lock();
      Busy = Hanging = false;
      errand->Done = true;
      Moved.notify_all();
    }
  }
};

SoundErrands::SoundErrands() : line_(std::make_shared<Line>()) {
  std::thread([line = line_] { line->Work(); }).detach();
}

SoundErrands::~SoundErrands() {
  std::unique_lock lock(line_->Mutex);
  line_->Ended = true;
  line_->Moved.notify_all();
  const auto patience = line_->Hanging ? std::chrono::milliseconds(0) : kPatience;
  line_->Moved.wait_for(lock, patience, [this] { return line_->Waiting.empty() && !line_->Busy; });
}

bool SoundErrands::Run(std::function<void()> errand) {
  const auto mine = std::make_shared<Errand>(Errand{std::move(errand)});
  std::unique_lock lock(line_->Mutex);
  line_->Waiting.push_back(mine);
  line_->Moved.notify_all();
  const auto patience = line_->Hanging ? std::chrono::milliseconds(0) : kPatience;
  if (line_->Moved.wait_for(lock, patience, [&] { return mine->Done; })) return true;
  mine->GivenUp = line_->Hanging = true;
  return false;
}

void SoundErrands::Post(std::function<void()> errand) {
  const std::lock_guard lock(line_->Mutex);
  line_->Waiting.push_back(std::make_shared<Errand>(Errand{std::move(errand)}));
  line_->Moved.notify_all();
}

bool SoundErrands::IsHanging() const {
  const std::lock_guard lock(line_->Mutex);
  return line_->Hanging;
}

}  // namespace quorl
