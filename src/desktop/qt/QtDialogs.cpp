#include "desktop/qt/QtDialogs.h"

#include <QColorDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>

namespace quorl {

namespace {

QMessageBox::Icon IconOf(MessageIcon icon) {
  switch (icon) {
    case MessageIcon::Information:
      return QMessageBox::Information;
    case MessageIcon::Question:
      return QMessageBox::Question;
    case MessageIcon::Warning:
      return QMessageBox::Warning;
    case MessageIcon::Critical:
      return QMessageBox::Critical;
    case MessageIcon::None:
      break;
  }
  return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons ButtonsOf(MessageButtons buttons) {
  switch (buttons) {
    case MessageButtons::OkCancel:
      return QMessageBox::Ok | QMessageBox::Cancel;
    case MessageButtons::YesNo:
      return QMessageBox::Yes | QMessageBox::No;
    case MessageButtons::YesNoCancel:
      return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case MessageButtons::Ok:
      break;
  }
  return QMessageBox::Ok;
}

// Closing a box without a button answers with what changes nothing.
MessageAnswer AnswerOf(int button, MessageButtons buttons) {
  switch (button) {
    case QMessageBox::Yes:
      return MessageAnswer::Yes;
    case QMessageBox::No:
      return MessageAnswer::No;
    case QMessageBox::Ok:
      return MessageAnswer::Ok;
    default:
      return buttons == MessageButtons::YesNo ? MessageAnswer::No
             : buttons == MessageButtons::Ok  ? MessageAnswer::Ok
                                              : MessageAnswer::Cancel;
  }
}

QString StartOf(const FileRequest& request, const QString& lastDirectory) {
  const QString directory =
      request.Directory.empty() ? lastDirectory : QString::fromStdString(request.Directory);
  const QString name = QString::fromStdString(request.FileName);
  return directory.isEmpty() || QFileInfo(name).isAbsolute() ? name : directory + '/' + name;
}

// Blue in the high byte.
QColor FromNumber(std::uint32_t number) {
  return {static_cast<int>(number & 0xFF), static_cast<int>(number >> 8 & 0xFF),
          static_cast<int>(number >> 16 & 0xFF)};
}

std::uint32_t NumberOf(const QColor& colour) {
  return static_cast<std::uint32_t>(colour.red() | colour.green() << 8 | colour.blue() << 16);
}

}  // namespace

QString QtFilterOf(const std::string& filter) {
  const QStringList parts = QString::fromStdString(filter).split('|');
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    const QString patterns = QString(parts[i + 1]).replace(';', ' ');
    QString words = parts[i];
    const qsizetype bracket = words.lastIndexOf('(');
    if (bracket >= 0) words.truncate(bracket);
    filters << words.trimmed() + " (" + patterns + ")";
  }
  return filters.join(";;");
}

MessageAnswer QtDialogs::ShowMessage(const MessageRequest& request) {
  QMessageBox box(IconOf(request.Icon), QString::fromStdString(request.Title),
                  QString::fromStdString(request.Text), ButtonsOf(request.Buttons), window_);
  box.setTextFormat(Qt::PlainText);
  return AnswerOf(box.exec(), request.Buttons);
}

void QtDialogs::ShowNotice(const MessageRequest& request) {
  auto* box = new QMessageBox(IconOf(request.Icon), QString::fromStdString(request.Title),
                              QString::fromStdString(request.Text), QMessageBox::Ok, window_);
  box->setTextFormat(Qt::PlainText);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setModal(false);
  box->show();
}

std::optional<std::string> QtDialogs::AskText(const std::string& title, const std::string& prompt,
                                              const std::string& suggestion) {
  bool accepted = false;
  const QString text =
      QInputDialog::getText(window_, QString::fromStdString(title), QString::fromStdString(prompt),
                            QLineEdit::Normal, QString::fromStdString(suggestion), &accepted);
  return accepted ? std::optional(text.toStdString()) : std::nullopt;
}

std::optional<std::string> QtDialogs::AskOpenFile(const FileRequest& request) {
  const QString path =
      QFileDialog::getOpenFileName(window_, QString::fromStdString(request.Title),
                                   StartOf(request, lastDirectory_), QtFilterOf(request.Filter));
  if (path.isEmpty()) return {};
  lastDirectory_ = QFileInfo(path).path();
  return path.toStdString();
}

std::optional<std::string> QtDialogs::AskSaveFile(const FileRequest& request) {
  const QString path = QFileDialog::getSaveFileName(
      window_, QString::fromStdString(request.Title), StartOf(request, lastDirectory_),
      QtFilterOf(request.Filter), nullptr, QFileDialog::DontConfirmOverwrite);
  if (path.isEmpty()) return {};
  lastDirectory_ = QFileInfo(path).path();
  return path.toStdString();
}

std::optional<std::uint32_t> QtDialogs::AskColour(std::uint32_t suggestion, CustomColours& custom) {
  const int places = std::min(QColorDialog::customCount(), static_cast<int>(custom.size()));
  for (int i = 0; i < places; ++i)
    QColorDialog::setCustomColor(i, FromNumber(custom[static_cast<std::size_t>(i)]));
  const QColor colour = QColorDialog::getColor(FromNumber(suggestion), window_, {},
                                               QColorDialog::DontUseNativeDialog);  // it keeps no colours
  for (int i = 0; i < places; ++i)
    custom[static_cast<std::size_t>(i)] = NumberOf(QColorDialog::customColor(i));
  return colour.isValid() ? std::optional(NumberOf(colour)) : std::nullopt;
}

}  // namespace quorl
