// What this program is, for who asks and for who reports a fault.
#pragma once

#include <string>

namespace quorl {

// Such as "1.0.0".
const char* ProgramVersion();

// Lines that name the program, the commit it was built from and the libraries it runs with. `toolkit` is one
// library more, such as "Qt 6.4.2"; may be empty.
std::string VersionText(const std::string& program, const std::string& toolkit);

}  // namespace quorl
