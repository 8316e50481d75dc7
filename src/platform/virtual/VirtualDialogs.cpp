#include "platform/virtual/VirtualDialogs.h"

namespace quorl {
namespace {

MessageAnswer Declined(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::Ok:
      return MessageAnswer::Ok;
    case MessageButtons::YesNo:
      return MessageAnswer::No;
    case MessageButtons::OkCancel:
    case MessageButtons::YesNoCancel:
      break;
  }
  return MessageAnswer::Cancel;
}

template <typename Answer>
Answer Next(std::deque<Answer>& script, Answer otherwise, const std::function<void()>& whileOpen) {
  if (whileOpen) whileOpen();
  if (script.empty()) return otherwise;
  Answer answer = std::move(script.front());
  script.pop_front();
  return answer;
}

}  // namespace

MessageAnswer VirtualDialogs::ShowMessage(const MessageRequest& request) {
  Messages.push_back(request);
  return Next(MessageAnswers, Declined(request.Buttons), WhileOpen);
}

std::optional<std::string> VirtualDialogs::AskText(const std::string& title, const std::string& prompt,
                                                   const std::string& suggestion) {
  TextRequests.push_back({title, prompt, suggestion});
  return Next(TextAnswers, {}, WhileOpen);
}

std::optional<std::string> VirtualDialogs::AskOpenFile(const FileRequest& request) {
  OpenFileRequests.push_back(request);
  return Next(OpenFileAnswers, {}, WhileOpen);
}

std::optional<std::string> VirtualDialogs::AskSaveFile(const FileRequest& request) {
  SaveFileRequests.push_back(request);
  return Next(SaveFileAnswers, {}, WhileOpen);
}

std::optional<std::uint32_t> VirtualDialogs::AskColour(std::uint32_t suggestion, CustomColours& custom) {
  if (MixColours) MixColours(custom);
  ColourRequests.push_back(suggestion);
  return Next(ColourAnswers, {}, WhileOpen);
}

}  // namespace quorl
