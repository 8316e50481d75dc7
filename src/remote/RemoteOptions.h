// Whether and where the radio listens for programs that steer it.
#pragma once

#include <cstdint>
#include <string>

#include "config/SettingsTable.h"
#include "platform/SocketPlace.h"
#include "support/Error.h"

namespace quorl {

struct RemoteOptions {
  static constexpr std::int32_t kUsualPort = 4532, kMostPort = 65535;

  bool On = false;
  std::string Address = kOwnMachine;
  std::int32_t Port = kUsualPort;
  bool OtherComputers = false;  // may connect: any address will do

  void AddSettings(SettingsTable& table);
  SocketPlace Place() const {
    return {ParseHost(Address).value_or(Address), static_cast<std::uint16_t>(Port)};
  }
  // Why it can't be listened there, which only a hand can have written into the settings.
  Failure Misfit() const;
};

// What keeps `address` from being listened at with that leave; empty for nothing.
std::string AddressFault(const std::string& address, bool otherComputers);

}  // namespace quorl
