#include "platform/linux/sound/RtAudioDevices.h"

#include <RtAudio.h>
#include <alsa/asoundlib.h>

#include <algorithm>
#include <array>

#include "platform/linux/sound/PulseDefaults.h"

namespace quorl {
namespace {

struct BackEndEntry {
  const char* Name;
  RtAudio::Api Api;
};
constexpr std::array<BackEndEntry, 3> kBackEnds = {
    {{"pulse", RtAudio::LINUX_PULSE}, {"alsa", RtAudio::LINUX_ALSA}, {"jack", RtAudio::UNIX_JACK}}};

bool IsKnown(const std::string& name) {
  return std::any_of(kBackEnds.begin(), kBackEnds.end(),
                     [&](const auto& entry) { return name == entry.Name; });
}

// ALSA's library tells standard error pages about each card that isn't there. What matters to the user comes
// back as an error, and is told in one line.
void DropAlsaComplaint(const char*, int, const char*, int, const char*, ...) {}

std::unique_ptr<RtAudio> Make(RtAudio::Api api) {
  auto audio = std::make_unique<RtAudio>(api);
  audio->showWarnings(false);
  return audio;
}

unsigned CountDevices(RtAudio& audio) {
  const bool asks = audio.getCurrentApi() != RtAudio::LINUX_PULSE || HasPulseDefaults();
  return asks ? audio.getDeviceCount() : 0;
}

}  // namespace

RtAudioDevices::RtAudioDevices(std::string name) : wanted_(IsKnown(name) ? std::move(name) : "") {
  snd_lib_error_set_handler(&DropAlsaComplaint);
}

void RtAudioDevices::Select() {
  for (const BackEndEntry& entry : kBackEnds) {
    if (!wanted_.empty() && wanted_ != entry.Name) continue;
    auto prober = Make(entry.Api);
    const bool runs = CountDevices(*prober) > 0;
    if (prober_ && !runs) continue;
    backEnd_ = entry.Name;
    prober_ = std::move(prober);
    if (runs) return;
  }
}

RtAudioDevices::~RtAudioDevices() = default;

std::unique_ptr<RtAudio> RtAudioDevices::Create() const {
  return Make(prober_->getCurrentApi());
}

std::vector<RtAudioDevice> RtAudioDevices::List() {
  std::vector<RtAudioDevice> devices;
  const unsigned count = CountDevices(*prober_);
  for (unsigned id = 0; id < count; ++id) {
    try {
      const RtAudio::DeviceInfo info = prober_->getDeviceInfo(id);
      if (!info.probed) continue;
      devices.push_back({id, info.name, info.inputChannels, info.outputChannels, info.sampleRates});
    } catch (const RtAudioError&) {
      // Unplugged between the count and the look.
    }
  }
  return devices;
}

}  // namespace quorl
