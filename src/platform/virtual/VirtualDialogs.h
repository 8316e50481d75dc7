// Dialogs without a person: what was shown is recorded, what is answered was scripted before.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Dialogs.h"

namespace quorl {

// Script and records are plain data. Where a script has run out, a box with one button is acknowledged and
// every question is declined: Cancel, No, nothing chosen.
class VirtualDialogs : public Dialogs {
 public:
  struct TextRequest {
    std::string Title, Prompt, Suggestion;
  };

  std::deque<MessageAnswer> MessageAnswers;
  std::deque<std::optional<std::string>> TextAnswers, OpenFileAnswers, SaveFileAnswers;
  std::deque<std::optional<std::uint32_t>> ColourAnswers;

  std::vector<MessageRequest> Messages, Notices;
  std::vector<TextRequest> TextRequests;
  std::vector<FileRequest> OpenFileRequests, SaveFileRequests;
  std::vector<std::uint32_t> ColourRequests;
  // What the user mixes for himself at each question for a colour. May be empty.
  std::function<void(CustomColours&)> MixColours;

  // Runs while a box stands open: the events that go on meanwhile.
  std::function<void()> WhileOpen;

  MessageAnswer ShowMessage(const MessageRequest& request) override;
  void ShowNotice(const MessageRequest& request) override { Notices.push_back(request); }
  std::optional<std::string> AskText(const std::string& title, const std::string& prompt,
                                     const std::string& suggestion) override;
  std::optional<std::string> AskOpenFile(const FileRequest& request) override;
  std::optional<std::string> AskSaveFile(const FileRequest& request) override;
  std::optional<std::uint32_t> AskColour(std::uint32_t suggestion, CustomColours& custom) override;
};

}  // namespace quorl
