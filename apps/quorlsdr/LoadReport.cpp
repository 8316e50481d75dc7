#include "LoadReport.h"

#include <sys/resource.h>

#include <algorithm>

#include "shared/JsonReport.h"

namespace quorl {

namespace {

double Seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

rusage Usage() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage;
}

double CpuSeconds() {
  const rusage usage = Usage();
  return Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
}

}  // namespace

void LoadReport::NoteBlock(double microseconds) {
  if (blocks_++ == 0) {
    firstBlockCpu_ = CpuSeconds();
    firstBlockSeconds_ = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin_).count();
  }
  microseconds_ += microseconds;
  longest_ = std::max(longest_, microseconds);
}

void LoadReport::NoteHousekeeping(double microseconds) {
  ++housekeepings_;
  housekeepingMicroseconds_ += microseconds;
}

void LoadReport::Print(frmMain& frame, HostMachine& machine, const WatchedApplication& application) const {
  const auto mean = [](double sum, std::int64_t count) {
    return count > 0 ? sum / static_cast<double>(count) : 0.0;
  };
  const double elapsed = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin_).count();
  const double listening = elapsed - firstBlockSeconds_;
  const SoundStatistics sound = machine.Parts().Sound.Statistics();
  JsonReport()
      .Add("seconds", elapsed, 2)
      .Add("first_audio_s", firstBlockSeconds_, 3)
      .Add("blocks", blocks_)
      .Add("us_per_block_mean", mean(microseconds_, blocks_), 1)
      .Add("us_per_block_max", longest_, 1)
      .Add("housekeeping_us_mean", mean(housekeepingMicroseconds_, housekeepings_), 1)
      .Add("repaints", application.Repaints)
      .Add("repaint_ms_mean", mean(application.RepaintMs, application.Repaints), 2)
      .Add("repaint_ms_max", application.LongestRepaintMs, 2)
      .Add("cpu_percent", listening > 0.0 ? 100.0 * (CpuSeconds() - firstBlockCpu_) / listening : 0.0, 2)
      .Add("resident_mb", static_cast<double>(Usage().ru_maxrss) / 1024.0, 1)
      .Add("overruns", sound.Overruns)
      .Add("underruns", sound.Underruns)
      .Add("signal_level", frame.Radio().Rx.MeanSignalLevel(), 2)
      .Print();
}

}  // namespace quorl
