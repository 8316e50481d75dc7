#include "Fault.h"

#include <iostream>

namespace quorl::cli {

void PrintFault(const std::string& text) {
  std::string line = "quorlsdr-cli: " + text;
  for (char& c : line) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = '?';
  }
  std::cerr << line << std::endl;
}

}  // namespace quorl::cli
