// Pictures as PNG files.
#pragma once

#include <cstdint>
#include <string>

#include "support/Error.h"

namespace quorl {

// The bytes of a PNG file, 8 bits a colour, of 0xFFRRGGBB pixels row by row. Empty with `failure` set where
// there is no memory for it.
std::string EncodePng(const std::uint32_t* pixels, int width, int height, Failure& failure);

}  // namespace quorl
