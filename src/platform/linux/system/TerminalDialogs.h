// Messages to a user who sits at a terminal, or to nobody.
#pragma once

#include <iosfwd>

#include "platform/Dialogs.h"

namespace quorl {

// Messages are written as "title: text". Nobody is asked: a question gets the answer that changes nothing
// (Cancel where it is offered, else No), and inputs and choosers read as cancelled.
class TerminalDialogs : public Dialogs {
 public:
  explicit TerminalDialogs(std::ostream& output) : output_(output) {}

  MessageAnswer ShowMessage(const MessageRequest& request) override;
  void ShowNotice(const MessageRequest& request) override;
  std::optional<std::string> AskText(const std::string& title, const std::string& prompt,
                                     const std::string& suggestion) override;
  std::optional<std::string> AskOpenFile(const FileRequest& request) override;
  std::optional<std::string> AskSaveFile(const FileRequest& request) override;
  std::optional<std::uint32_t> AskColour(std::uint32_t suggestion, CustomColours& custom) override;

 private:
  std::ostream& output_;
};

}  // namespace quorl
