#include "desktop/views/ScopeView.h"

#include <QPaintEvent>
#include <QPainter>

#include "desktop/views/Skin.h"

namespace quorl {

ScopeView::ScopeView(RefreshClock& clock, CanvasPicture& picture)
    : View(clock, picture),
      picture_(picture),
      surface0_([this] { update(); }),
      surface1_([this] { update(); }) {
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_OpaquePaintEvent);
  setCursor(Qt::CrossCursor);
  SetSizes(QSizePolicy::Expanding, QSizePolicy::Expanding, false);
}

ScopeView::~ScopeView() {
  if (picture_.Surface0() == &surface0_) picture_.SetSurfaces(nullptr, nullptr);
}

QString ScopeView::SpokenName() const {
  const std::string& own = picture_.AccessibleName();
  return own.empty() ? QStringLiteral("Scope") : QString::fromStdString(own);
}

void ScopeView::SetRatio(double ratio) {
  ratio_ = ratio;
  if (WantedRatio() != surface0_.Ratio()) Lend();
}

void ScopeView::Lend() {
  surface0_.Resize(size(), WantedRatio());
  surface1_.Resize(size(), WantedRatio());
  picture_.SetSurfaces(&surface0_, &surface1_);
}

void ScopeView::resizeEvent(QResizeEvent* event) {
  View::resizeEvent(event);
  Lend();
}

void ScopeView::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  QtCanvas* shown = surface0_.IsVisible() ? &surface0_ : surface1_.IsVisible() ? &surface1_ : nullptr;
  if (!shown) {
    painter.fillRect(event->rect(), Tones().Ground());
    return;
  }
  shown->CopyTo(painter);
  // The window has come to another screen.
  if (WantedRatio() != shown->Ratio())
    QMetaObject::invokeMethod(
        this, [this] { Lend(); }, Qt::QueuedConnection);
}

}  // namespace quorl
