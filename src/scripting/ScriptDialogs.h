// Boxes and questions that a script answers.
#pragma once

#include <cstdint>
#include <deque>
#include <iosfwd>
#include <optional>
#include <string>
#include <utility>

#include "platform/Dialogs.h"

namespace quorl {

// A box that the script has no answer for is acknowledged, a question declined; with AsksPerson set it goes
// to the person instead.
class ScriptDialogs final : public Dialogs {
 public:
  // `output` hears the text of every box.
  ScriptDialogs(Dialogs& person, std::ostream& output) : person_(person), output_(output) {}

  bool AsksPerson = true;
  void AddAnswer(std::string answer) { answers_.push_back(std::move(answer)); }

  MessageAnswer ShowMessage(const MessageRequest& request) override;
  void ShowNotice(const MessageRequest& request) override;
  std::optional<std::string> AskText(const std::string& title, const std::string& prompt,
                                     const std::string& suggestion) override;
  std::optional<std::string> AskOpenFile(const FileRequest& request) override;
  std::optional<std::string> AskSaveFile(const FileRequest& request) override;
  std::optional<std::uint32_t> AskColour(std::uint32_t suggestion, CustomColours& custom) override;

 private:
  std::optional<std::string> NextAnswer();

  Dialogs& person_;
  std::ostream& output_;
  std::deque<std::string> answers_;
};

}  // namespace quorl
