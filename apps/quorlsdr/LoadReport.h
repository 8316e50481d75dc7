// What a run cost: start, blocks, processor and memory, as one line of JSON.
#pragma once

#include <chrono>
#include <cstdint>

#include "WatchedApplication.h"
#include "core/frmMain.h"
#include "shared/HostMachine.h"

namespace quorl {

class LoadReport {
 public:
  // The run begins now.
  LoadReport() : begin_(std::chrono::steady_clock::now()) {}

  // Microseconds that the pump took for a block.
  void NoteBlock(double microseconds);
  // Microseconds of one round of housekeeping.
  void NoteHousekeeping(double microseconds);
  void Print(frmMain& frame, HostMachine& machine, const WatchedApplication& application) const;

 private:
  std::chrono::steady_clock::time_point begin_;
  double firstBlockSeconds_ = 0.0;
  double firstBlockCpu_ = 0.0;  // seconds of processor time that the start took
  std::int64_t blocks_ = 0;
  double microseconds_ = 0.0, longest_ = 0.0;
  std::int64_t housekeepings_ = 0;
  double housekeepingMicroseconds_ = 0.0;
};

}  // namespace quorl
