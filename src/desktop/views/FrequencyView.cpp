#include "desktop/views/FrequencyView.h"

#include <QPainter>
#include <cmath>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

constexpr double kSmallHeight = 42;  // tenths of a hertz
constexpr int kTop = 8, kBelow = 12;
constexpr int kAdvance = 38, kSmallAdvance = 27, kPoint = 10;
constexpr int kTenAdvance = 35;  // closer together, so that ten find room in the smallest window
constexpr double kLeadingOpacity = 0.26;
constexpr std::array<const char*, FrequencyView::kDigits> kWeights{
    "10 MHz", "1 MHz", "100 KHz", "10 KHz", "1 KHz", "100 Hz", "10 Hz", "1 Hz", "0.1 Hz"};

bool PointBefore(int index) {
  return index == 2 || index == 5 || index == 8;
}

// The ground of a figure of nine or ten; -1 is that of 100 MHz.
QRectF StripOf(int index, bool ten) {
  const int advance = ten ? kTenAdvance : kAdvance;
  double x = ten && index >= 0 ? advance : 0;
  for (int i = 0; i < index; ++i) x += advance + (PointBefore(i) ? kPoint : 0);
  if (PointBefore(index)) x += kPoint;
  const double width = index == FrequencyView::kDigits - 1 ? kSmallAdvance : advance;
  return {x, 0, width, double(kTop + FrequencyView::kHeight + kBelow)};
}

// Where the pointer is over a figure: points belong half to the one before and half to the one after.
QRect ReachOf(int index, bool ten) {
  const double before = PointBefore(index) ? kPoint / 2.0 : 0;
  const double after = index + 1 < FrequencyView::kDigits && PointBefore(index + 1) ? kPoint / 2.0 : 0;
  return StripOf(index, ten).adjusted(-before, 0, after, 0).toRect();
}

}  // namespace

DigitView::DigitView(RefreshClock& clock, Label& digit, int index)
    : View(clock, digit), digit_(digit), index_(index) {
  SetPrompt();
}

void DigitView::TakeOver() {
  View::TakeOver();
  if (parentWidget()) parentWidget()->update();
}

QString DigitView::SpokenName() const {
  return QStringLiteral("Digit ") + kWeights.at(static_cast<std::size_t>(index_));
}

bool DigitView::HasKeyboard() const {
  const auto* display = dynamic_cast<const FrequencyView*>(parentWidget());
  return display && display->hasFocus() && display->FocusedPart() == this;
}

std::optional<View::Range> DigitView::SpokenRange() const {
  if (!Figure().isDigit()) return std::nullopt;
  return Range{double(Figure().digitValue()), 0, 9};
}

void DigitView::SetSpoken(double value) {
  auto* display = dynamic_cast<FrequencyView*>(parentWidget());
  if (display && Shown().Enabled()) display->SetFigure(index_, static_cast<int>(std::lround(value)));
}

QChar DigitView::Figure() const {
  const std::string& text = digit_.Caption();
  return text.empty() ? QChar(' ') : QChar::fromLatin1(text.front());
}

FrequencyView::FrequencyView(RefreshClock& clock, FrequencyDisplay& surface,
                             const std::array<Label*, kDigits>& digits, Label* top)
    : View(clock, surface), surface_(surface), digits_(digits), top_(top) {
  setFocusPolicy(Qt::StrongFocus);
  SetSizes(QSizePolicy::Fixed, QSizePolicy::Fixed);
  SetPrompt();
  if (top_) Watch(*top_);
  for (int i = 0; i < kDigits; ++i) {
    const auto place = static_cast<std::size_t>(i);
    if (!digits[place]) continue;
    Watch(*digits[place]);
    auto* view = new DigitView(clock, *digits[place], i);
    view->setParent(this);
    view->setFocusProxy(this);
    views_[place] = view;
  }
  PlaceDigits();
}

void FrequencyView::PlaceDigits() {
  for (int i = 0; i < kDigits; ++i) {
    if (Digit(i)) Digit(i)->setGeometry(ReachOf(i, ShowsTop()));
  }
}

void FrequencyView::TakeOver() {
  if (showsTop_ != ShowsTop()) {
    showsTop_ = ShowsTop();
    PlaceDigits();
  }
  View::TakeOver();
  if (hasFocus() && ChosenDigit() != spokenDigit_) SpeakFocus();
}

View* FrequencyView::FocusedPart() const {
  const int chosen = ChosenDigit();
  return chosen >= 0 ? Digit(chosen) : nullptr;
}

void FrequencyView::focusInEvent(QFocusEvent* event) {
  View::focusInEvent(event);
  SpeakFocus();
}

// The digit that is tuned is what a screen reader stands on.
void FrequencyView::SpeakFocus() {
  spokenDigit_ = ChosenDigit();
  if (!FocusedPart() || !QAccessible::isActive()) return;
  QAccessibleEvent event(FocusedPart(), QAccessible::Focus);
  QAccessible::updateAccessibility(&event);
}

QString FrequencyView::Figures() const {
  QString text = ShowsTop() ? QString::fromStdString(top_->Caption()) : QString();
  for (const DigitView* view : views_) text += view ? view->Figure() : QChar('0');
  return text;
}

QString FrequencyView::SpokenName() const {
  const std::string& own = Shown().AccessibleName();
  return own.empty() ? QStringLiteral("Frequency") : QString::fromStdString(own);
}

QString FrequencyView::SpokenValue() const {
  const QString figures = Figures();
  QString whole = figures.chopped(1);
  while (whole.size() > 1 && whole.front() == '0') whole.remove(0, 1);
  return whole + '.' + figures.back() + QStringLiteral(" Hz");
}

std::optional<View::Range> FrequencyView::SpokenRange() const {
  return Range{Figures().toDouble() / 10, 0, 214748364.7};
}

void FrequencyView::SetFigure(int index, int figure) {
  QString figures = Figures();
  if (figure < 0 || figure > 9) return;
  figures[figures.size() - kDigits + index] = QChar('0' + figure);
  SetSpoken(figures.toDouble() / 10);
}

QSize FrequencyView::sizeHint() const {
  return {static_cast<int>(StripOf(kDigits - 1, ShowsTop()).right()), kTop + kHeight + kBelow};
}

int FrequencyView::ChosenDigit() const {
  const int digit = surface_.ChosenDigit();
  return digit < kDigits ? digit : -1;
}

void FrequencyView::Step(int steps) {
  if (const int chosen = ChosenDigit(); chosen >= 0 && Digit(chosen)) Digit(chosen)->Step(steps);
}

void FrequencyView::OnMenuKey() {
  const int chosen = ChosenDigit();
  if (chosen >= 0 && Digit(chosen)) {
    Digit(chosen)->Shown().MouseDown({.Button = MouseButton::Right});
  }
}

QColor FrequencyView::InkOf(const Label& digit) const {
  return Tones().Text(digit.ForeColour(), Tones().Over());
}

void FrequencyView::PaintChosen(QPainter& painter, const QRectF& strip, const QColor& ink) const {
  QLinearGradient ground(strip.topLeft(), strip.bottomLeft());
  ground.setColorAt(0, skin::Faded(ink, 0.02));
  ground.setColorAt(1, skin::Faded(ink, 0.22));
  painter.setPen(Qt::NoPen);
  painter.setBrush(ground);
  painter.drawRoundedRect(strip.adjusted(1, 0, -1, -5), 3, 3);
  painter.setBrush(ink);
  painter.drawRoundedRect(QRectF(strip.left() + 3, strip.bottom() - 4, strip.width() - 6, 3), 1.5, 1.5);
}

void FrequencyView::PaintFigure(QPainter& painter, QChar figure, const QRectF& strip, double height,
                                const QColor& ink, bool lit) {
  const double margin = NumeralCache::Margin(height);
  const double left = strip.left() + (strip.width() - kNumeralWidth * height) / 2;
  painter.drawPixmap(QPointF(left - margin, kTop + kHeight - height - margin),
                     numerals_.Get(figure, ink, height, lit && !Tones().IsLight(), devicePixelRatioF()));
}

void FrequencyView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (!isEnabled()) painter.setOpacity(skin::kDisabledOpacity);
  bool leading = !ShowsTop();
  if (!leading && !top_->Caption().empty()) {
    PaintFigure(painter, QChar::fromLatin1(top_->Caption().front()), StripOf(-1, true), kHeight, InkOf(*top_),
                true);
  }
  for (int i = 0; i < kDigits; ++i) {
    const Label* digit = digits_[static_cast<std::size_t>(i)];
    if (!digit) continue;
    const QChar figure = Digit(i)->Figure();
    leading = leading && figure == '0' && i < kDigits - 2;
    const QColor ink = InkOf(*digit);
    const QRectF strip = StripOf(i, ShowsTop());
    if (i == ChosenDigit()) PaintChosen(painter, strip, ink);
    if (PointBefore(i)) {
      painter.setPen(Qt::NoPen);
      painter.setBrush(skin::Faded(ink, leading ? kLeadingOpacity : 0.55));
      painter.drawEllipse(QPointF(strip.left() - kPoint / 2.0, kTop + kHeight - 3.5), 3.2, 3.2);
    }
    PaintFigure(painter, figure, strip, i == kDigits - 1 ? kSmallHeight : kHeight,
                leading ? skin::Faded(ink, kLeadingOpacity) : ink, !leading);
  }
}

}  // namespace quorl
