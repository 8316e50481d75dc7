// quorlsdr-cli devices: what there is to listen with.
#include <cstdio>
#include <string>
#include <vector>

#include "Commands.h"
#include "platform/linux/lines/SerialPortList.h"
#include "platform/linux/sound/RtAudioSoundSystem.h"
#include "platform/linux/system/LinuxEventQueue.h"

namespace quorl::cli {
namespace {

void PrintNumbered(const char* title, const std::vector<std::string>& names) {
  std::printf("%s\n", title);
  for (std::size_t i = 0; i < names.size(); ++i) std::printf("  %zu  %s\n", i + 1, names[i].c_str());
  if (names.empty()) std::printf("  none\n");
}

int Run() {
  LinuxEventQueue queue;
  RtAudioSoundSystem sound(queue);
  PrintNumbered("Capture devices", sound.CaptureDeviceNames());
  PrintNumbered("Playback devices", sound.PlaybackDeviceNames());
  std::printf("Serial ports\n");
  const std::vector<SerialPortInfo> ports = ListSerialPorts();
  for (const SerialPortInfo& port : ports) {
    std::printf("  %s%s\n", port.Path.c_str(),
                port.Device == port.Path ? "" : ("  (" + port.Device + ")").c_str());
  }
  if (ports.empty()) std::printf("  none\n");
  return ExitCode::Success;
}

}  // namespace

void AddDevicesCommand(CLI::App& app, int& exitCode) {
  CLI::App* command = app.add_subcommand("devices", "List sound devices and serial ports");
  command->callback([&exitCode] { exitCode = Run(); });
}

}  // namespace quorl::cli
