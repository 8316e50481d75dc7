// Questions and messages to the user: what the desktop shows as boxes and choosers.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace quorl {

// What a user has mixed for himself in the colour dialog; white where he has not.
using CustomColours = std::array<std::uint32_t, 16>;

enum class MessageIcon { None, Information, Question, Warning, Critical };
enum class MessageButtons { Ok, OkCancel, YesNo, YesNoCancel };
enum class MessageAnswer { Ok, Cancel, Yes, No };

struct MessageRequest {
  std::string Text;  // may hold line ends
  std::string Title;
  MessageIcon Icon = MessageIcon::None;
  MessageButtons Buttons = MessageButtons::Ok;
};

struct FileRequest {
  std::string Title;
  std::string Filter;     // "Description (*.ext)|*.ext", more pairs follow with '|'
  std::string Directory;  // where to begin; empty is the user's choice of last time
  std::string FileName;   // suggestion
};

// Every call but ShowNotice returns when the user has answered; other events of the queue go on meanwhile.
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  virtual MessageAnswer ShowMessage(const MessageRequest& request) = 0;
  // A message that keeps nobody from the panel: returns at once, and its one button takes it away.
  virtual void ShowNotice(const MessageRequest& request) = 0;
  // Empty where the user cancelled.
  virtual std::optional<std::string> AskText(const std::string& title, const std::string& prompt,
                                             const std::string& suggestion) = 0;
  virtual std::optional<std::string> AskOpenFile(const FileRequest& request) = 0;
  // A name that is taken is not asked about: that is the caller's, who knows what it means.
  virtual std::optional<std::string> AskSaveFile(const FileRequest& request) = 0;
  // Colours as 24-bit numbers, blue in the high byte. The user may put together colours of his own in
  // `custom` on the way, also where he cancels then.
  virtual std::optional<std::uint32_t> AskColour(std::uint32_t suggestion, CustomColours& custom) = 0;
};

}  // namespace quorl
