// The boxes of a radio that somebody who doesn't see them may be working.
#pragma once

#include "platform/Dialogs.h"

namespace quorl {

class UnattendedDialogs final : public Dialogs {
 public:
  // `boxes` outlive this.
  explicit UnattendedDialogs(Dialogs& boxes) : boxes_(boxes) {}

  // While it is set, a message waits for nobody: it is shown, and whoever shows it goes on.
  bool Unattended = false;

  MessageAnswer ShowMessage(const MessageRequest& request) override {
    if (!Unattended || request.Buttons != MessageButtons::Ok) return boxes_.ShowMessage(request);
    boxes_.ShowNotice(request);
    return MessageAnswer::Ok;
  }
  void ShowNotice(const MessageRequest& request) override { boxes_.ShowNotice(request); }
  std::optional<std::string> AskText(const std::string& title, const std::string& prompt,
                                     const std::string& suggestion) override {
    return boxes_.AskText(title, prompt, suggestion);
  }
  std::optional<std::string> AskOpenFile(const FileRequest& request) override {
    return boxes_.AskOpenFile(request);
  }
  std::optional<std::string> AskSaveFile(const FileRequest& request) override {
    return boxes_.AskSaveFile(request);
  }
  std::optional<std::uint32_t> AskColour(std::uint32_t suggestion, CustomColours& custom) override {
    return boxes_.AskColour(suggestion, custom);
  }

 private:
  Dialogs& boxes_;
};

}  // namespace quorl
