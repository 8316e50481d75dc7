#include "shared/DemoBoard.h"

#include "support/Text.h"

namespace quorl {

namespace {

constexpr const char* kDemoPort = "/dev/ttyS0";  // COM1

BoardSettings SettingsOf(const DemoBoard::Options& options) {
  BoardSettings settings = BoardOfModel(options.SDRModelNo);
  settings.LowSideInjection = options.LowSideLO;
  return settings;
}

}  // namespace

std::unique_ptr<DemoBoard> DemoBoard::Create(const Options& options, const Files& files, EventQueue& queue,
                                             Failure& failure) {
  std::unique_ptr<SimulatedBand> band = LoadBand(files, options.DataFolder, failure);
  if (!band) return nullptr;
  return std::unique_ptr<DemoBoard>(new DemoBoard(options, std::move(band), queue));
}

DemoBoard::DemoBoard(const Options& options, std::unique_ptr<SimulatedBand> band, EventQueue& queue)
    : receiver_(options.SDRModelNo, std::move(band), SettingsOf(options)),
      serial_(lineClock_, queue),
      printer_(lineClock_) {
  receiver_.SetClockError(options.ErrorPpm);
  serial_.Ports = {{kDemoPort, kDemoPort}};
  serial_.SetRecording(false);
  serial_.SetListener(&receiver_.Cable());
  printer_.SetRecording(false);
  printer_.SetListener(&receiver_.Cable());
}

void PutDemoDefaults(SettingsStore& store) {
  struct Default {
    const char* Section;
    const char* Key;
    std::string Value;
  };
  constexpr const char* kBroadcaster = "72050000";  // dHz, AM with music
  const Default defaults[] = {
      {"DDSAD9951", "ClkIn", NumberText(kAd9951BoardClockHz)},
      {"DDSAD9835", "ClkIn", NumberText(kAd9835BoardClockHz)},
      {"VFO1.DRT1", "TunedFrequency", kBroadcaster},
      {"VFO1.ElektorDRM", "TunedFrequency", kBroadcaster},
      {"VFO1.RXIQ", "TunedFrequency", kBroadcaster},
      {"frmMain", "CurrentMainBandName", "Demo"},
      {"frmMain", "AutoStartSDR", "True"},
      {"frmMain", "PerfStatsOn", "1"},
  };
  for (const Default& entry : defaults) {
    if (store.GetSetting(entry.Section, entry.Key, "").empty())
      store.SaveSetting(entry.Section, entry.Key, entry.Value);
  }
}

}  // namespace quorl
