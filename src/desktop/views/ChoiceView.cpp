#include "desktop/views/ChoiceView.h"

#include <QMenu>
#include <QPainter>
#include <QTimer>

#include "desktop/views/Skin.h"

namespace quorl {

QMenu* MakeItemMenu(ComboBox& box, QWidget* parent) {
  auto* menu = new QMenu(parent);
  menu->setFont(skin::WordFont());
  const auto count = static_cast<int>(box.Items().size());
  const int ticked = box.ListIndex() >= 0 ? box.ListIndex() : box.Marked();
  for (int i = 0; i < count; ++i) {
    QString text = QString::fromStdString(box.Items()[static_cast<std::size_t>(i)]);
    QAction* action = menu->addAction(text.replace('&', QStringLiteral("&&")));
    action->setCheckable(true);
    action->setChecked(i == ticked);
    QObject::connect(action, &QAction::triggered, menu, [&box, i] { box.UserSet(std::to_string(i)); });
    if (i == ticked) menu->setActiveAction(action);
  }
  return menu;
}

ChoiceView::ChoiceView(RefreshClock& clock, ComboBox& box, int width)
    : View(clock, box), box_(box), width_(width) {
  setFocusPolicy(Qt::StrongFocus);
  SetSizes(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void ChoiceView::Press() {
  if (!box_.Enabled() || box_.Items().empty()) return;
  QMenu* menu = MakeItemMenu(box_, this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->setMinimumWidth(width());
  menu->popup(mapToGlobal(QPoint(0, height() + 2)));
}

void ChoiceView::Step(int steps) {
  const int last = static_cast<int>(box_.Items().size()) - 1;
  const int item = std::clamp(box_.ListIndex() - steps, 0, std::max(last, 0));
  if (last >= 0 && item != box_.ListIndex()) box_.UserSet(std::to_string(item));
}

bool ChoiceView::OnKey(int code, Modifiers with) {
  if (IsPressKey(code) || (code == Key::Down && with.Alt)) {
    Press();
  } else if (code == Key::Up || code == Key::Down) {
    Step(code == Key::Up ? 1 : -1);
  } else {
    return false;
  }
  return true;
}

bool ChoiceView::OnWheel(int notches, Modifiers) {
  Step(notches);
  return true;
}

void ChoiceView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (LooksOff()) painter.setOpacity(skin::kDisabledOpacity);
  const skin::Tones tones = Tones();
  const skin::ButtonLook look = skin::LookOf(tones, tones.HueOf(kUnselectedColour), {.Hovered = IsHovered()});
  painter.setPen(QPen(box_.Fault().empty() ? look.Edge : tones.Over(), 1));
  painter.setBrush(look.Face);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), skin::kRadius, skin::kRadius);
  painter.setFont(skin::WordFont());
  painter.setPen(tones.Ink());
  painter.drawText(rect().adjusted(8, 0, -20, 0), Qt::AlignLeft | Qt::AlignVCenter,
                   QString::fromStdString(box_.Text()));
  painter.setPen(QPen(look.Ink, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  const QPointF tip(width() - 12, height() / 2.0 + 2);
  const QPointF arrow[] = {tip + QPointF(-4, -4), tip, tip + QPointF(4, -4)};
  painter.drawPolyline(arrow, 3);
}

PopupListView::PopupListView(RefreshClock& clock, PopupBox& box, QWidget* anchor)
    : View(clock, box, anchor->window()), box_(box), anchor_(anchor) {
  resize(0, 0);
  hide();
}

PopupListView::~PopupListView() {
  delete menu_;
}

void PopupListView::TakeOver() {
  if (box_.Visible() && !menu_) {
    Open();
  } else if (!box_.Visible() && menu_) {
    menu_->close();
  }
}

void PopupListView::Open() {
  if (!anchor_ || !anchor_->isVisible() || box_.Items().empty()) return;
  menu_ = MakeItemMenu(box_, anchor_);
  QObject::connect(menu_, &QMenu::aboutToHide, this, [this] {
    // The chosen item is only told after the menu has closed, and an invisible control takes no choice.
    QTimer::singleShot(0, this, [this] {
      if (menu_) menu_->deleteLater();
      menu_ = nullptr;
      if (!box_.Visible()) return;
      if (box_.LostFocus) {
        box_.LostFocus();
      } else {
        Raise(box_.KeyDown, Key{Key::Escape, {}});
      }
    });
  });
  const Control* beside = box_.Beside();
  const auto* named =
      beside ? anchor_->window()->findChild<QWidget*>(QString::fromStdString(beside->Name())) : nullptr;
  const QWidget* under = named ? named : anchor_.data();
  menu_->popup(under->mapToGlobal(QPoint(0, under->height())));
}

}  // namespace quorl
