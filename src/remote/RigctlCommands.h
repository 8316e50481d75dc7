// The commands of the Hamlib network protocol that a receiver has an answer to.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "remote/RemoteRadio.h"
#include "remote/RigctlAnswer.h"

namespace quorl {

inline constexpr std::size_t kMostParameters = 2;
using RigctlParameters = std::array<std::string_view, kMostParameters>;  // empty beyond the command's own

struct RigctlCommand {
  char Letter;            // 0 for none
  std::string_view Name;  // after a backslash
  std::size_t Parameters;
  // Carries the command out and appends its values.
  RigctlCode (*CarryOut)(RemoteRadio& radio, const RigctlParameters& parameters, RigctlAnswer& answer);
  bool HasCode = true;  // false: the answer is its value, without head and code in either form
  bool Ends = false;    // the client goes
};

// Null where there is none.
const RigctlCommand* FindRigctlCommand(char letter);
const RigctlCommand* FindRigctlCommand(std::string_view name);

}  // namespace quorl
