// Where a program listens: one of its machine's addresses, and a port.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace quorl {

inline constexpr char kOwnMachine[] = "127.0.0.1";  // nobody else reaches it

struct SocketPlace {
  std::string Address = kOwnMachine;  // in figures, of IPv4 or IPv6
  std::uint16_t Port = 0;             // 0: any that is free

  bool operator==(const SocketPlace&) const = default;
};

// "127.0.0.1:4532", "[::1]:4532".
std::string PlaceText(const SocketPlace& place);
// An address in figures, without spaces around it; "localhost" is kOwnMachine. Empty where it is none. Of
// IPv6 only the characters are looked at.
std::optional<std::string> ParseHost(const std::string& text);
// "PORT", "ADDRESS:PORT" or "[ADDRESS]:PORT", as PlaceText writes it; empty where it is none.
std::optional<SocketPlace> ParsePlace(const std::string& text);
// Only programs of the same machine reach it.
bool IsOwnMachineOnly(const std::string& address);

}  // namespace quorl
