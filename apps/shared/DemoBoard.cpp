#include "shared/DemoBoard.h"

#include "support/Text.h"

namespace quorl {

namespace {

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
  receiver_.Chip().SetClockError(options.ErrorPpm);
  serial_.SetRecording(false);
  serial_.SetListener(&receiver_.Cable());
  printer_.SetRecording(false);
  printer_.SetListener(&receiver_.Cable());
}

void PutDemoClocks(SettingsStore& store) {
  struct ChipClock {
    const char* Section;
    double Hertz;
  };
  constexpr ChipClock kClocks[] = {{"DDSAD9951", kAd9951BoardClockHz}, {"DDSAD9835", kAd9835BoardClockHz}};
  for (const ChipClock& clock : kClocks) {
    if (!store.GetSetting(clock.Section, "ClkIn", "").empty()) continue;
    store.SaveSetting(clock.Section, "ClkIn", NumberText(clock.Hertz));
  }
}

}  // namespace quorl
