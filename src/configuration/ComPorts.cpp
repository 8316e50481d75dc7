#include "configuration/ComPorts.h"

#include <algorithm>

namespace quorl {
namespace {

std::string ComName(int number) {
  return "COM" + std::to_string(number);
}

}  // namespace

std::string PortName(const std::string& path) {
  constexpr std::string_view kById = "/by-id/", kUsb = "usb-", kTail = "-if";
  const std::size_t at = path.find(kById);
  if (at == std::string::npos) return path;
  std::string name = path.substr(at + kById.size());
  if (name.starts_with(kUsb)) name.erase(0, kUsb.size());
  if (const std::size_t tail = name.rfind(kTail); tail != std::string::npos) name.resize(tail);
  std::replace(name.begin(), name.end(), '_', ' ');
  return name;
}

void ComPorts::Refresh(const clsDDSSerialIF& serial, const std::vector<SerialPortInfo>& there) {
  ports_ = {};
  std::vector<SerialPortInfo> left = there;
  for (int number = 1; number <= kCount; ++number) {
    const std::string path = serial.DevicePath(ComName(number));
    const auto leads = [&path](const SerialPortInfo& port) {
      return port.Path == path || port.Device == path;
    };
    if (std::none_of(there.begin(), there.end(), leads)) continue;
    ports_[static_cast<std::size_t>(number - 1)].Path = path;
    std::erase_if(left, leads);
  }
  for (const SerialPortInfo& port : left) {
    for (int number = 1; number <= kCount; ++number) {
      Port& place = ports_[static_cast<std::size_t>(number - 1)];
      const bool free =
          place.Path.empty() && number != serial.PortNo && !serial.HasOwnDevice(ComName(number));
      if (!free) continue;
      place = {port.Path, true};
      break;
    }
  }
}

std::vector<std::string> ComPorts::Names() const {
  std::vector<std::string> names;
  for (int number = 1; number <= kCount; ++number) {
    const Port& port = ports_[static_cast<std::size_t>(number - 1)];
    names.push_back(ComName(number) + "  " + (port.Path.empty() ? "(not there)" : PortName(port.Path)));
  }
  return names;
}

bool ComPorts::IsThere(int number) const {
  return number >= 1 && number <= kCount && !ports_[static_cast<std::size_t>(number - 1)].Path.empty();
}

std::string ComPorts::NewPath(int number) const {
  if (number < 1 || number > kCount) return {};
  const Port& port = ports_[static_cast<std::size_t>(number - 1)];
  return port.IsNew ? port.Path : std::string();
}

}  // namespace quorl
