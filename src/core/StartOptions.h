// What a start of the program is told from outside.
#pragma once

#include <string>

namespace quorl {

struct StartOptions {
  std::string CommandLine;        // "trace" anywhere in it shows the log from the first step
  std::string ApplicationFolder;  // band plans live here
};

}  // namespace quorl
