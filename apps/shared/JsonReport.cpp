#include "shared/JsonReport.h"

#include <cmath>
#include <cstdio>

namespace quorl {

JsonReport::JsonReport() = default;

JsonReport& JsonReport::Add(const std::string& key, double value, int decimals) {
  const double scale = std::pow(10.0, decimals);
  line_[key] = std::round(value * scale) / scale;
  return *this;
}

void JsonReport::Print() const {
  std::fprintf(stderr, "%s\n", line_.dump().c_str());
}

}  // namespace quorl
