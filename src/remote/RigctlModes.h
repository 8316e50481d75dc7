// The modes by the names that the Hamlib network protocol has for them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "remote/RemoteRadio.h"

namespace quorl {

// The bit of each mode in a list of modes.
namespace RigctlModeBit {
inline constexpr std::uint32_t AM = 0x1, CW = 0x2, USB = 0x4, LSB = 0x8, FM = 0x20;
inline constexpr std::uint32_t All = AM | CW | USB | LSB | FM;
}  // namespace RigctlModeBit

std::string_view RigctlModeName(RemoteMode mode);
// In capitals or not; data over a sideband is that sideband. Empty for a mode that this radio hasn't.
std::optional<RemoteMode> ParseRigctlMode(std::string_view name);

}  // namespace quorl
