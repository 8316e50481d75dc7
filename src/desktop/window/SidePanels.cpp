#include "desktop/window/SidePanels.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>
#include <cmath>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

constexpr int kMapPatience = 200;  // ms

}  // namespace

SplashPanel::SplashPanel(const QString& version) : QWidget(nullptr, Qt::SplashScreen), version_(version) {
  constexpr int kWidth = 480, kHeight = 240;
  resize(kWidth, kHeight);
  setObjectName("frmSplash1");
  setAccessibleName("QUORLSDR is starting");
  if (const QScreen* screen = QGuiApplication::primaryScreen()) {
    move(screen->availableGeometry().center() - rect().center());
  }
  show();
  repaint();
}

void SplashPanel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const skin::Tones tones(palette());
  painter.fillRect(rect(), tones.Card());
  painter.setPen(QPen(tones.CardLine(), 1));
  painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));

  // A carrier and what it carries.
  QPainterPath wave;
  constexpr int kLeft = 40, kMiddle = 92;
  wave.moveTo(kLeft, kMiddle);
  for (int x = 0; x <= width() - 2 * kLeft; ++x) {
    const double envelope = 26 * (0.55 + 0.45 * std::sin(x * 0.0315 - 1.2));
    wave.lineTo(kLeft + x, kMiddle - envelope * std::sin(x * 0.42));
  }
  painter.setPen(QPen(skin::Faded(tones.Accent(), 0.18), 5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPath(wave);
  painter.setPen(QPen(tones.Accent(), 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPath(wave);

  painter.setPen(tones.Ink());
  QFont name = skin::WordFont(30, true);
  name.setLetterSpacing(QFont::AbsoluteSpacing, 4);
  painter.setFont(name);
  painter.drawText(QRect(kLeft, 142, width(), 40), Qt::AlignLeft | Qt::AlignVCenter, "QUORLSDR");
  painter.setFont(skin::WordFont(12));
  painter.setPen(tones.Quiet());
  painter.drawText(QRect(kLeft, 186, width(), 20), Qt::AlignLeft | Qt::AlignVCenter,
                   "Software defined radio receiver   " + version_);
}

LogWindow::LogWindow(const ControlRegistry& registry, Binder::Logger log)
    : QWidget(nullptr, Qt::Tool), bind_(registry, clock_, std::move(log)), form_(registry.Find("frmLog")) {
  setWindowTitle("QUORLSDR - Log");
  setObjectName("frmLog");
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(skin::kGrid, skin::kGrid, skin::kGrid, skin::kGrid);
  if (ListView* list = bind_.List("lstLog")) rows->addWidget(list);
  resize(640, 360);
  if (!form_) return;
  following_ = form_->OnChanged.Listen([this] { setVisible(form_->Visible()); });
  setVisible(form_->Visible());
}

LogWindow::~LogWindow() {
  following_.reset();
  qDeleteAll(findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly));
}

void LogWindow::PaintNow() {
  if (!isVisible()) return;
  // Nothing that is painted shows until the display has made the window.
  for (QDeadlineTimer patience(kMapPatience); !windowHandle()->isExposed() && !patience.hasExpired();)
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, 10);
  clock_.Flush();
  repaint();
}

void LogWindow::closeEvent(QCloseEvent* event) {
  if (!form_) return;
  event->ignore();
  form_->Visible = false;
}

void LogWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  clock_.Flush();
  clock_.SetAwake(true);
}

void LogWindow::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  clock_.SetAwake(false);
}

}  // namespace quorl
