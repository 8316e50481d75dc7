#include "platform/linux/system/TerminalDialogs.h"

#include <ostream>

namespace quorl {

void TerminalDialogs::ShowNotice(const MessageRequest& request) {
  if (!request.Title.empty()) output_ << request.Title << ": ";
  output_ << request.Text << std::endl;
}

MessageAnswer TerminalDialogs::ShowMessage(const MessageRequest& request) {
  ShowNotice(request);
  switch (request.Buttons) {
    case MessageButtons::Ok:
      return MessageAnswer::Ok;
    case MessageButtons::YesNo:
      return MessageAnswer::No;
    default:
      return MessageAnswer::Cancel;
  }
}

std::optional<std::string> TerminalDialogs::AskText(const std::string&, const std::string&,
                                                    const std::string&) {
  return {};
}

std::optional<std::string> TerminalDialogs::AskOpenFile(const FileRequest&) {
  return {};
}

std::optional<std::string> TerminalDialogs::AskSaveFile(const FileRequest&) {
  return {};
}

std::optional<std::uint32_t> TerminalDialogs::AskColour(std::uint32_t, CustomColours&) {
  return {};
}

}  // namespace quorl
