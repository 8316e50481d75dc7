#include "memories/PlanFormat.h"

#include "support/TextEncoding.h"

namespace quorl {

PlanFormat FormatOf(std::string_view content) {
  PlanFormat format;
  format.ByteOrderMark = content.starts_with(kByteOrderMark);
  for (auto at = content.find('\n'); at != std::string_view::npos; at = content.find('\n', at + 1)) {
    if (at == 0 || content[at - 1] != '\r') format.OtherLineEnds = true;
  }
  format.UnfinishedLine = !content.empty() && content.back() != '\n';
  return format;
}

std::string MendedFormat(std::string_view content) {
  if (content.starts_with(kByteOrderMark)) content.remove_prefix(sizeof kByteOrderMark - 1);
  std::string mended;
  mended.reserve(content.size() + content.size() / 16);
  for (std::size_t i = 0; i < content.size(); ++i) {
    if (content[i] == '\n' && (i == 0 || content[i - 1] != '\r')) mended += '\r';
    mended += content[i];
  }
  if (mended.ends_with('\r')) mended.pop_back();
  if (!mended.empty() && !mended.ends_with('\n')) mended += "\r\n";
  return mended;
}

}  // namespace quorl
