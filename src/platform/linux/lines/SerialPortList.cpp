#include "platform/linux/lines/SerialPortList.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace quorl {
namespace {

namespace fs = std::filesystem;

// Paths of what stands in `directory` under a name that begins with `prefix`; ttyS2 comes before ttyS10.
std::vector<std::string> Entries(const std::string& directory, const std::string& prefix) {
  std::vector<std::string> paths;
  std::error_code error;
  for (fs::directory_iterator entry(directory, error), end; !error && entry != end; entry.increment(error)) {
    if (entry->path().filename().string().starts_with(prefix)) paths.push_back(entry->path().string());
  }
  std::sort(paths.begin(), paths.end(), [](const std::string& a, const std::string& b) {
    return a.size() != b.size() ? a.size() < b.size() : a < b;
  });
  return paths;
}

// The kernel keeps names for ports that no hardware answers to; their type is 0.
bool HasHardware(const std::string& root, const std::string& device) {
  std::ifstream file(root + "/sys/class/tty/" + fs::path(device).filename().string() + "/type");
  int type = 0;
  return file >> type && type != 0;
}

std::string Resolve(const std::string& path) {
  std::error_code error;
  const fs::path target = fs::canonical(path, error);
  return error ? path : target.string();
}

}  // namespace

std::vector<SerialPortInfo> ListSerialPorts(const std::string& root) {
  std::vector<SerialPortInfo> ports;
  for (const std::string& path : Entries(root + "/dev/serial/by-id", ""))
    ports.push_back({path, Resolve(path)});
  for (const std::string& path : Entries(root + "/dev", "ttyS")) {
    if (HasHardware(root, path)) ports.push_back({path, path});
  }
  for (const char* prefix : {"ttyUSB", "ttyACM"}) {
    for (const std::string& path : Entries(root + "/dev", prefix)) {
      const bool listed = std::any_of(ports.begin(), ports.end(), [device = Resolve(path)](const auto& port) {
        return port.Device == device;
      });
      if (!listed) ports.push_back({path, path});
    }
  }
  return ports;
}

}  // namespace quorl
