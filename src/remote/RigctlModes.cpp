#include "remote/RigctlModes.h"

#include "support/Text.h"

namespace quorl {

namespace {

struct NamedMode {
  std::string_view Name;
  RemoteMode Mode;
};

// The first name of a mode is the one that is told.
constexpr NamedMode kModes[] = {
    {"AM", RemoteMode::AM},      {"CW", RemoteMode::CW}, {"USB", RemoteMode::USB},
    {"LSB", RemoteMode::LSB},    {"FM", RemoteMode::FM}, {"PKTUSB", RemoteMode::USB},
    {"PKTLSB", RemoteMode::LSB},
};

}  // namespace

std::string_view RigctlModeName(RemoteMode mode) {
  for (const NamedMode& named : kModes)
    if (named.Mode == mode) return named.Name;
  return {};
}

std::optional<RemoteMode> ParseRigctlMode(std::string_view name) {
  for (const NamedMode& named : kModes)
    if (EqualsNoCase(named.Name, name)) return named.Mode;
  return {};
}

}  // namespace quorl
