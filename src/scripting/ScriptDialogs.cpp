#include "scripting/ScriptDialogs.h"

#include <ostream>

#include "support/Text.h"

namespace quorl {

std::optional<std::string> ScriptDialogs::NextAnswer() {
  if (answers_.empty()) return {};
  std::string answer = std::move(answers_.front());
  answers_.pop_front();
  return answer;
}

void ScriptDialogs::ShowNotice(const MessageRequest& request) {
  output_ << "box: " << request.Title << ": " << request.Text << std::endl;
  if (AsksPerson) person_.ShowNotice(request);
}

MessageAnswer ScriptDialogs::ShowMessage(const MessageRequest& request) {
  output_ << "box: " << request.Title << ": " << request.Text << std::endl;
  const std::optional<std::string> answer = NextAnswer();
  if (!answer) {
    if (AsksPerson) return person_.ShowMessage(request);
    return request.Buttons == MessageButtons::Ok      ? MessageAnswer::Ok
           : request.Buttons == MessageButtons::YesNo ? MessageAnswer::No
                                                      : MessageAnswer::Cancel;
  }
  const bool yes = EqualsNoCase(*answer, "yes");
  if (request.Buttons == MessageButtons::Ok) return MessageAnswer::Ok;
  if (request.Buttons == MessageButtons::OkCancel) return yes ? MessageAnswer::Ok : MessageAnswer::Cancel;
  if (request.Buttons == MessageButtons::YesNoCancel && EqualsNoCase(*answer, "cancel"))
    return MessageAnswer::Cancel;
  return yes ? MessageAnswer::Yes : MessageAnswer::No;
}

std::optional<std::string> ScriptDialogs::AskText(const std::string& title, const std::string& prompt,
                                                  const std::string& suggestion) {
  output_ << "box: " << title << ": " << prompt << std::endl;
  if (auto answer = NextAnswer()) return answer;
  return AsksPerson ? person_.AskText(title, prompt, suggestion) : std::nullopt;
}

std::optional<std::string> ScriptDialogs::AskOpenFile(const FileRequest& request) {
  if (auto answer = NextAnswer()) return answer;
  return AsksPerson ? person_.AskOpenFile(request) : std::nullopt;
}

std::optional<std::string> ScriptDialogs::AskSaveFile(const FileRequest& request) {
  if (auto answer = NextAnswer()) return answer;
  return AsksPerson ? person_.AskSaveFile(request) : std::nullopt;
}

std::optional<std::uint32_t> ScriptDialogs::AskColour(std::uint32_t suggestion, CustomColours& custom) {
  if (const auto answer = NextAnswer()) {
    const auto number = ParseInt32(*answer);
    return number ? std::optional<std::uint32_t>(static_cast<std::uint32_t>(*number)) : std::nullopt;
  }
  return AsksPerson ? person_.AskColour(suggestion, custom) : std::nullopt;
}

}  // namespace quorl
