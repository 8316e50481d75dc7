// A band plan file as start-up finds it.
#pragma once

#include <cstdint>
#include <string>

namespace quorl {

struct MainBand {
  std::string Path;
  std::string Name;  // the file's name without its ending
  std::int32_t Index = 0;
};

}  // namespace quorl
