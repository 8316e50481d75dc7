#include "platform/SocketPlace.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "support/Text.h"

namespace quorl {
namespace {

constexpr int kParts = 4;  // of an address of IPv4

// All of `text` as a number up to `most`.
std::optional<int> Number(std::string_view text, int most) {
  int number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, fault] = std::from_chars(text.data(), end, number);
  const bool fits = fault == std::errc() && stop == end && number >= 0 && number <= most;
  return fits ? std::optional(number) : std::nullopt;
}

bool IsIPv4(std::string_view text) {
  for (int part = 1;; ++part) {
    const std::size_t dot = text.find('.');
    if (!Number(text.substr(0, dot), 255)) return false;
    if (dot == std::string_view::npos) return part == kParts;
    text.remove_prefix(dot + 1);
  }
}

// A link's own address names the link behind a percent sign.
bool IsLikeIPv6(std::string_view text) {
  const std::string_view figures = text.substr(0, text.find('%'));
  return std::count(figures.begin(), figures.end(), ':') >= 2 &&
         figures.find_first_not_of("0123456789abcdefABCDEF:.") == std::string_view::npos;
}

}  // namespace

std::string PlaceText(const SocketPlace& place) {
  const bool brackets = place.Address.find(':') != std::string::npos;
  return (brackets ? "[" + place.Address + "]" : place.Address) + ":" + std::to_string(place.Port);
}

std::optional<std::string> ParseHost(const std::string& text) {
  std::string address(Trim(text));
  if (address == "localhost") return kOwnMachine;
  if (!IsIPv4(address) && !IsLikeIPv6(address)) return {};
  return address;
}

std::optional<SocketPlace> ParsePlace(const std::string& text) {
  const std::size_t colon = text.rfind(':');
  const std::string port = colon == std::string::npos ? text : text.substr(colon + 1);
  const std::optional<int> number = Number(port, 65535);
  if (!number) return {};
  SocketPlace place{kOwnMachine, static_cast<std::uint16_t>(*number)};
  if (colon == std::string::npos) return place;
  std::string host = text.substr(0, colon);
  const bool brackets = host.size() > 2 && host.front() == '[' && host.back() == ']';
  if (brackets) host = host.substr(1, host.size() - 2);
  const std::optional<std::string> address = ParseHost(host);
  // Without brackets nobody can tell where an address of IPv6 ends.
  if (!address || brackets != (address->find(':') != std::string::npos)) return {};
  place.Address = *address;
  return place;
}

bool IsOwnMachineOnly(const std::string& address) {
  return (IsIPv4(address) && address.starts_with("127.")) || address == "::1";
}

}  // namespace quorl
