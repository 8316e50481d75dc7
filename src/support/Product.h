// The product's name, as titles, the settings store and the log use it.
#pragma once

namespace quorl {

inline constexpr char kProductName[] = "QUORLSDR";

}  // namespace quorl
