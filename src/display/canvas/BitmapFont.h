// Letters as they stand on a canvas that has no toolkit to draw them.
#pragma once

#include <string_view>

namespace quorl {

// The printable characters of ASCII, 5 x 7 pixels and two rows for what hangs below the line. Any other byte
// is a box.
struct BitmapFont {
  static constexpr int kGlyphWidth = 5, kGlyphHeight = 9;
  static constexpr int kAdvance = 6;  // from a character to the next

  // `x`, `y` from the top left of the character's drawing.
  static bool IsInk(char character, int x, int y);
  static int Width(std::string_view text);
};

}  // namespace quorl
