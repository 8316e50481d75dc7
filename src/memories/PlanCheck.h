// What a load takes from a plan's file, line by line, and what somebody who wrote it by hand should know.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quorl {

struct PlanFinding {
  int Line = 0;  // from 1; 0 for the file as a whole
  bool Warning = false;
  std::string Text;  // without line breaks
};

// In the order of lines. `modeName` names a DemodMode. Faults of the file's format are told, and the rest is
// looked at as if they were mended.
std::vector<PlanFinding> CheckPlan(std::string_view content,
                                   const std::function<std::string(std::int32_t mode)>& modeName);

}  // namespace quorl
