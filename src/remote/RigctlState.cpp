#include "remote/RigctlState.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "remote/RigctlModes.h"
#include "support/NumberPicture.h"

namespace quorl {

namespace {

constexpr double kLowest = 10000;  // Hz; a range from 0 is taken for the list's end by some clients
// Levels that can be asked for, and set: the S-meter and the volume. A client doesn't ask for others.
constexpr std::uint32_t kStrengthBit = 0x40000000, kVolumeBit = 0x8;
constexpr char kHertz[] = "0.000000";

std::string Hex(std::uint32_t bits) {
  std::array<char, 8> digits;
  return "0x" + std::string(digits.data(), std::to_chars(digits.begin(), digits.end(), bits, 16).ptr);
}

}  // namespace

std::string RigctlStateText(const RemoteRadio& radio) {
  using namespace RigctlModeBit;
  const double highest = std::round(radio.HighestFrequency());
  std::string text = "1\n1\n0\n";  // version of this list, model, region
  // Receives: from, to, modes, power, VFOs, antennas; and transmits nowhere.
  text += FormatPicture(kLowest, kHertz) + " " + FormatPicture(highest, kHertz) + " " + Hex(All) +
          " -1 -1 0x1 0x1\n0 0 0 0 0 0 0\n0 0 0 0 0 0 0\n";
  // Tuning steps and usual widths, in hertz, by modes.
  text += Hex(All) + " 1\n0 0\n";
  text += Hex(USB | LSB) + " 2400\n" + Hex(CW) + " 400\n" + Hex(AM | FM) + " 10000\n0 0\n";
  text += "0\n0\n0\n0\n0\n0\n";  // RIT, XIT, IF shift, announces, preamplifiers, attenuators
  // Functions, levels and parameters, each to be read and to be set.
  text += "0x0\n0x0\n" + Hex(kStrengthBit | kVolumeBit) + "\n" + Hex(kVolumeBit) + "\n0x0\n0x0\n";
  return text + "vfo_ops=0x0\nptt_type=0x0\ntargetable_vfo=0x3\nhas_set_freq=1\nhas_get_freq=1\ndone";
}

}  // namespace quorl
