#include "shared/InstalledData.h"

#include <cstdlib>

namespace quorl {

std::string FindInstalledData(const Files& files) {
  if (const char* named = std::getenv("QUORLSDR_DATA"); named != nullptr && *named != 0) return named;
  const std::string installed = QUORL_INSTALLED_DATA;
  return files.Exists(installed + "/demo/stations.ini") ? installed : QUORL_SOURCE_DATA;
}

std::vector<InstalledFolder> FilledFrom(const std::string& data) {
  return {{data + "/bandplans", ""}, {data + "/themes", "themes"}};
}

}  // namespace quorl
