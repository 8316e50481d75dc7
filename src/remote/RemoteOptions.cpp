#include "remote/RemoteOptions.h"

#include <system_error>

namespace quorl {

void RemoteOptions::AddSettings(SettingsTable& table) {
  table.Add("On", On);
  table.Add("Address", Address);
  table.Add("Port", Port);
  table.Add("OtherComputers", OtherComputers);
}

std::string AddressFault(const std::string& address, bool otherComputers) {
  const std::optional<std::string> parsed = ParseHost(address);
  if (!parsed) return "is no address such as 127.0.0.1";
  if (otherComputers || IsOwnMachineOnly(*parsed)) return {};
  return "lets other computers in: tick that they may connect, or take 127.0.0.1";
}

Failure RemoteOptions::Misfit() const {
  const auto refuse = [](const std::string& reason) {
    return Error{static_cast<int>(std::errc::invalid_argument), "Can't listen for remote control: " + reason};
  };
  if (Port < 1 || Port > kMostPort)
    return refuse("port " + std::to_string(Port) + " is none from 1 to 65535. Choose another one.");
  const std::string fault = AddressFault(Address, OtherComputers);
  return fault.empty() ? Failure{} : refuse("the address \"" + Address + "\" " + fault + ".");
}

}  // namespace quorl
