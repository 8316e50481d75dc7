// Numbers shown to people: one formatter for all of the program's number pictures.
#pragma once

#include <string>
#include <string_view>

namespace quorl {

// `value` in the shape of `picture`, for instance (1234.5, "#,##0.00 dB") -> "1,234.50 dB".
//
//   0    a digit, 0 where the number has none       #   a digit, nothing where the number has none
//   .    the decimal point                          ,   between digit places: groups of three by commas
//   %    the number times 100, with the sign        all else stands for itself, also between digit places
//
// Digits before the first place go in front of it, so a picture sets a minimum only. A minus sign leads the
// whole text, and goes where the number rounds to 0. Rounding takes the value as its 15-digit decimal number
// and rounds halves away from zero. A number that is none gives "NaN", an infinite one "Inf" or "-Inf".
std::string FormatPicture(double value, std::string_view picture);

}  // namespace quorl
