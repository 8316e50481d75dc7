// The page of remote control.
#include <cmath>
#include <system_error>

#include "configuration/frmConfig.h"
#include "support/Text.h"

namespace quorl {
namespace {

constexpr const char* kStays = " - the old one stays";

bool IsOfPort(const Error& failure) {
  return failure.Code == static_cast<int>(std::errc::address_in_use) ||
         failure.Code == static_cast<int>(std::errc::permission_denied);
}

}  // namespace

void frmConfig::AddRemoteFields() {
  RemoteOptions& remote = links_.Remote;
  fields_.Add(Remote.chkRemoteOn, [&remote] { return remote.On; });
  fields_.Add(Remote.txtRemoteAddress, [&remote] { return remote.Address; });
  fields_.Add(Remote.txtRemotePort, [&remote] { return std::to_string(remote.Port); });
  fields_.Add(Remote.chkRemoteOthers, [&remote] { return remote.OtherComputers; });
}

void frmConfig::ShowRemote() {
  Remote.lblRemoteState.Caption = links_.Server.StateText();
}

void frmConfig::TakeRemoteAddress() {
  TextBox& field = Remote.txtRemoteAddress;
  const std::string fault = AddressFault(field.Value(), links_.Remote.OtherComputers);
  if (!fault.empty()) {
    faults_.Mark(field, "Address: \"" + field.Value() + "\" " + fault + kStays);
  } else if (const std::optional<std::string> address = ParseHost(field.Value())) {
    links_.Remote.Address = *address;
    fields_.Load(&field);
  }
}

void frmConfig::TakeRemotePort() {
  TextBox& field = Remote.txtRemotePort;
  const std::optional<double> port = ParseTyped(field.Value());
  if (!port || *port != std::floor(*port) || *port < 1 || *port > RemoteOptions::kMostPort) {
    faults_.Mark(field, "Port: \"" + field.Value() + "\" is no number from 1 to 65535" + kStays);
  } else {
    links_.Remote.Port = static_cast<std::int32_t>(*port);
    fields_.Load(&field);
  }
}

// A port that was taken is tried again.
void frmConfig::ApplyRemote() {
  links_.Remote.On = Remote.chkRemoteOn.Value();
  links_.Remote.OtherComputers = Remote.chkRemoteOthers.Value();
  TakeRemoteAddress();
  TakeRemotePort();
  const Failure failure = links_.Server.Follow(links_.Remote);
  TextBox& field = failure && IsOfPort(*failure) ? Remote.txtRemotePort : Remote.txtRemoteAddress;
  if (failure && field.Fault().empty()) faults_.Mark(field, failure->Text);
  ShowRemote();
}

}  // namespace quorl
