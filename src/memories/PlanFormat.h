// How a plan's file is written down, below its sections and keys: line ends and byte order mark.
#pragma once

#include <string>
#include <string_view>

namespace quorl {

struct PlanFormat {
  bool ByteOrderMark = false;   // hides the first section
  bool OtherLineEnds = false;   // lines that end in a line feed alone run into the next one
  bool UnfinishedLine = false;  // the last line has no end, and is not read
  bool HidesSomething() const { return ByteOrderMark || OtherLineEnds; }
  bool IsSound() const { return !HidesSomething() && !UnfinishedLine; }
};

PlanFormat FormatOf(std::string_view content);
// The same content without these faults.
std::string MendedFormat(std::string_view content);

}  // namespace quorl
