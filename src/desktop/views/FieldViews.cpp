#include "desktop/views/FieldViews.h"

#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

constexpr int kShortList = 32;

void Fill(QWidget* view, QWidget* inner) {
  auto* layout = new QVBoxLayout(view);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(inner);
  view->setFocusProxy(inner);
}

}  // namespace

ListView::ListView(RefreshClock& clock, ListBox& list)
    : View(clock, list), list_(list), lines_(new QListWidget(this)) {
  Fill(this, lines_);
  lines_->setFont(skin::NumberFont(11));
  lines_->setUniformItemSizes(true);
  QObject::connect(lines_, &QListWidget::currentRowChanged, this, [this](int row) {
    if (!takingOver_ && row >= 0) list_.UserSet(std::to_string(row));
  });
}

void ListView::TakeOver() {
  View::TakeOver();
  takingOver_ = true;
  const std::vector<std::string>& items = list_.Items();
  const auto count = static_cast<int>(items.size());
  const auto textOf = [&](int row) { return QString::fromStdString(items[static_cast<std::size_t>(row)]); };
  const int standing = lines_->count();
  const bool same = standing <= count && (standing == 0 || lines_->item(0)->text() == textOf(0)) &&
                    (standing == 0 || lines_->item(standing - 1)->text() == textOf(standing - 1));
  if (!same && standing != count) lines_->clear();
  // A list of a few lines may have any of them changed; a long one only grows or is another one.
  for (int row = 0; row < lines_->count() && (!same || count <= kShortList); ++row) {
    if (lines_->item(row)->text() != textOf(row)) lines_->item(row)->setText(textOf(row));
  }
  for (int row = lines_->count(); row < count; ++row) lines_->addItem(textOf(row));
  lines_->setCurrentRow(list_.ListIndex());
  if (list_.ListIndex() >= 0) lines_->scrollToItem(lines_->item(list_.ListIndex()));
  lines_->setAccessibleName(SpokenName());
  takingOver_ = false;
}

TextView::TextView(RefreshClock& clock, TextBox& text, int width)
    : View(clock, text), text_(text), width_(width), line_(new QLineEdit(this)) {
  Fill(this, line_);
  line_->setFont(skin::WordFont());
  QObject::connect(line_, &QLineEdit::textEdited, this,
                   [this](const QString& typed) { text_.UserSet(typed.toStdString()); });
  // The line has the keyboard in place of the view. Enter ends the typing, too.
  QObject::connect(line_, &QLineEdit::editingFinished, this, [this] { text_.LostFocus(); });
}

void TextView::TakeOver() {
  View::TakeOver();
  const QString value = QString::fromStdString(text_.Value());
  if (line_->text() != value) line_->setText(value);
  line_->setAccessibleName(SpokenName());
  line_->setPlaceholderText(SpokenName());
  TakeTones();
}

void TextView::TakeTones() {
  const Colour ink = text_.ForeColour();
  const skin::Tones tones = Tones();
  const auto inkOf = [&](Colour number) {
    return skin::Readable(skin::ColourOf(number), tones.Face(), tones.TextContrast()).name();
  };
  QString style = ink == kNoColour ? QString() : "color: " + inkOf(ink) + ";";
  if (!text_.Fault().empty()) style += "border: 1px solid " + tones.Over().name() + ";";
  if (line_->styleSheet() != style) line_->setStyleSheet(style);
}

SymbolView::SymbolView(RefreshClock& clock, Picture& picture, Symbol symbol)
    : View(clock, picture), picture_(picture), symbol_(symbol) {
  SetSizes(QSizePolicy::Fixed, QSizePolicy::Fixed);
  if (picture.DblClick) setFocusPolicy(Qt::TabFocus);
}

void SymbolView::Press() {
  if (picture_.Enabled() && picture_.Visible()) picture_.DblClick({});
}

bool SymbolView::OnKey(int code, Modifiers) {
  if (!IsPressKey(code)) return false;
  Press();
  return true;
}

QSize SymbolView::sizeHint() const {
  constexpr int kSide = 20, kSides = 8;
  if (symbol_ != Symbol::None) return {kSide, 24};
  return {
      std::max(kSide, skin::TextWidth(skin::WordFont(), QString::fromStdString(picture_.Caption())) + kSides),
      24};
}

void SymbolView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor ink = Tones().Text(picture_.ForeColour(), Tones().Accent());
  const QPointF middle = QRectF(rect()).center();
  if (symbol_ == Symbol::None) {
    painter.setFont(skin::WordFont());
    painter.setPen(ink);
    painter.drawText(rect(), Qt::AlignCenter, QString::fromStdString(picture_.Caption()));
    return;
  }
  painter.setPen(QPen(ink, 1.6));
  painter.drawArc(QRectF(middle.x() - 3.2, middle.y() - 7, 6.4, 7.5), 0, 180 * 16);
  painter.drawLine(middle + QPointF(-3.2, -3.2), middle + QPointF(-3.2, -1));
  painter.drawLine(middle + QPointF(3.2, -3.2), middle + QPointF(3.2, -1));
  painter.setPen(Qt::NoPen);
  painter.setBrush(ink);
  painter.drawRoundedRect(QRectF(middle.x() - 5, middle.y() - 1, 10, 8), 1.5, 1.5);
}

}  // namespace quorl
