// Colours of the waterfall, from quiet to loud.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace quorl {

enum class Palette { Viridis, Inferno, Grey };

// Names of the palettes, in their order.
inline constexpr std::array<std::string_view, 3> kPaletteNames{"viridis", "inferno", "grey"};

// 0xFFRRGGBB at `place`, 0 (quiet) to 1 (loud); what lies outside has the colour of the end.
std::uint32_t PaletteColour(Palette palette, double place);

}  // namespace quorl
