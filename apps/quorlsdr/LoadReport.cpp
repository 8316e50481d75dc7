#include "LoadReport.h"

#include <sys/resource.h>

#include <algorithm>
#include <cstdio>

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

void LoadReport::Print(frmMain& frame, RadioMachine& machine, const WatchedApplication& application) const {
  const auto mean = [](double sum, std::int64_t count) {
    return count > 0 ? sum / static_cast<double>(count) : 0.0;
  };
  const double elapsed = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin_).count();
  const double listening = elapsed - firstBlockSeconds_;
  const SoundStatistics sound = machine.Parts().Sound.Statistics();
  std::fprintf(
      stderr,
      "{\"seconds\": %.2f, \"first_audio_s\": %.3f, \"blocks\": %lld, \"us_per_block_mean\": %.1f, "
      "\"us_per_block_max\": %.1f, \"housekeeping_us_mean\": %.1f, \"repaints\": %lld, \"repaint_ms_mean\": "
      "%.2f, \"repaint_ms_max\": %.2f, \"cpu_percent\": %.2f, \"resident_mb\": %.1f, \"overruns\": %lld, "
      "\"underruns\": %lld, \"signal_level\": %.2f}\n",
      elapsed, firstBlockSeconds_, static_cast<long long>(blocks_), mean(microseconds_, blocks_), longest_,
      mean(housekeepingMicroseconds_, housekeepings_), static_cast<long long>(application.Repaints),
      mean(application.RepaintMs, application.Repaints), application.LongestRepaintMs,
      listening > 0.0 ? 100.0 * (CpuSeconds() - firstBlockCpu_) / listening : 0.0,
      static_cast<double>(Usage().ru_maxrss) / 1024.0, static_cast<long long>(sound.Overruns),
      static_cast<long long>(sound.Underruns), static_cast<double>(frame.Radio().Radio.MeanSignalLevel()));
}

}  // namespace quorl
