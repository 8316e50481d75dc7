// Messages, questions and choosers as boxes of the desktop.
#pragma once

#include <QPointer>
#include <QWidget>

#include "platform/Dialogs.h"

namespace quorl {

// The boxes stand over the window, or alone as long as there is none; the queue goes on behind them.
class QtDialogs : public Dialogs {
 public:
  void SetWindow(QWidget* window) { window_ = window; }

  MessageAnswer ShowMessage(const MessageRequest& request) override;
  void ShowNotice(const MessageRequest& request) override;
  std::optional<std::string> AskText(const std::string& title, const std::string& prompt,
                                     const std::string& suggestion) override;
  std::optional<std::string> AskOpenFile(const FileRequest& request) override;
  std::optional<std::string> AskSaveFile(const FileRequest& request) override;
  std::optional<std::uint32_t> AskColour(std::uint32_t suggestion, CustomColours& custom) override;

 private:
  QPointer<QWidget> window_;
  QString lastDirectory_;
};

// "Text (*.a)|*.a;*.b|All|*" as Qt writes it: "Text (*.a *.b);;All (*)", without saying a pattern twice.
QString QtFilterOf(const std::string& filter);

}  // namespace quorl
