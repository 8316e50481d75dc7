#include "desktop/views/QtCanvas.h"

#include <algorithm>
#include <cmath>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

// Far outside of any surface, and well inside of what the rasteriser counts with.
constexpr double kFar = 16000;

double Bounded(double x) {
  return x > -kFar ? (x < kFar ? x : kFar) : -kFar;  // and no number goes to the edge
}

QColor ColourOf(Ink ink) {
  return skin::Faded(skin::ColourOf(ink.Value), std::clamp(ink.Opacity, 0.0F, 1.0F));
}

// An ink over a row of pixels. Bytes and 16-bit products are what every processor takes many of at once.
class Mixture {
 public:
  Mixture(const QColor& ink, float opacity)
      : rest_(static_cast<quint16>(256 - std::lround(256 * std::clamp(opacity, 0.0F, 1.0F)))) {
    const QRgb rgb = ink.rgb();
    for (int byte = 0; byte < 4; ++byte) {
      added_[byte] = static_cast<quint16>((rgb >> (8 * byte) & 0xFF) * (256U - rest_));
    }
  }
  void Take(const QRgb* from, QRgb* to, int count) const {
    const auto* in = reinterpret_cast<const uchar*>(from);
    auto* out = reinterpret_cast<uchar*>(to);
    const quint16 rest = rest_, blue = added_[0], green = added_[1], red = added_[2], whole = added_[3];
    const auto mixed = [rest](uchar under, quint16 added) {
      return static_cast<uchar>(static_cast<quint16>(under * rest + added) >> 8);
    };
    for (int i = 0; i < 4 * count; i += 4) {
      out[i] = mixed(in[i], blue);
      out[i + 1] = mixed(in[i + 1], green);
      out[i + 2] = mixed(in[i + 2], red);
      out[i + 3] = mixed(in[i + 3], whole);
    }
  }

 private:
  quint16 rest_;  // of 256
  quint16 added_[4]{};
};

}  // namespace

QtCanvas::QtCanvas(std::function<void()> shown) : shown_(std::move(shown)) {
  Resize({1, 1}, 1);
}

void QtCanvas::Resize(const QSize& size, double ratio) {
  EndPainting();
  const QImage before = image_.copy();
  size_ = size.expandedTo({1, 1});
  ratio_ = ratio;
  texts_.SetRatio(ratio);
  const QSize device(static_cast<int>(std::ceil(size_.width() * ratio)),
                     static_cast<int>(std::ceil(size_.height() * ratio)));
  pixels_.assign(static_cast<std::size_t>(device.width()) * static_cast<std::size_t>(device.height()),
                 skin::kScopeGround);
  tops_.resize(static_cast<std::size_t>(device.width()));
  mixed_.resize(tops_.size());
  image_ = QImage(reinterpret_cast<uchar*>(pixels_.data()), device.width(), device.height(),
                  4 * qsizetype{device.width()}, QImage::Format_RGB32);
  if (!before.isNull()) Painter().drawImage(image_.rect(), before);
}

QImage QtCanvas::Pixels() {
  EndPainting();
  return {reinterpret_cast<const uchar*>(pixels_.data()), image_.width(), image_.height(),
          image_.bytesPerLine(), image_.format()};
}

void QtCanvas::CopyTo(QPainter& painter) {
  QImage shown = Pixels();
  shown.setDevicePixelRatio(ratio_);
  painter.drawImage(QPointF(0, 0), shown);
}

QPainter& QtCanvas::Painter() {
  if (!painter_.isActive()) {
    painter_.begin(&image_);
    painter_.setRenderHint(QPainter::Antialiasing);
  }
  return painter_;
}

void QtCanvas::EndPainting() {
  if (painter_.isActive()) painter_.end();
}

QPointF QtCanvas::Device(CanvasPoint point) const {
  const CanvasScale& scale = Scale();
  return {Bounded((point.X - scale.Left) * image_.width() / scale.Width),
          Bounded((point.Y - scale.Top) * image_.height() / scale.Height)};
}

void QtCanvas::Clear(Colour colour) {
  const QColor ground = skin::ColourOf(colour);
  texts_.SetGround(ground);
  std::fill(pixels_.begin(), pixels_.end(), ground.rgb());
}

void QtCanvas::Line(CanvasPoint from, CanvasPoint to, Ink ink) {
  QPointF a = Device(from), b = Device(to);
  if (a.x() != b.x() && a.y() != b.y()) {
    Painter().setPen(QPen(ColourOf(ink), 0));
    Painter().drawLine(a, b);
    return;
  }
  // Upright and level lines are one row of pixels; one along the far edge is the last row.
  const auto within = [](double x, int size) {
    return x >= size && x < size + 0.5 ? size - 1 : static_cast<int>(std::floor(x));
  };
  const int left = within(std::min(a.x(), b.x()), image_.width());
  const int right = within(std::max(a.x(), b.x()), image_.width());
  const int top = within(std::min(a.y(), b.y()), image_.height());
  const int bottom = within(std::max(a.y(), b.y()), image_.height());
  Fill(QRect(QPoint(left, top), QPoint(right, bottom)), ink);
}

// The painter would hand a translucent area to other threads and wait for them, however small it is.
void QtCanvas::Fill(const QRect& area, Ink ink) {
  const QRect seen = area & image_.rect();
  const Mixture mixture(skin::ColourOf(ink.Value), ink.Opacity);
  for (int y = seen.top(); y <= seen.bottom(); ++y) {
    QRgb* row = pixels_.data() + static_cast<std::ptrdiff_t>(y) * image_.width() + seen.left();
    mixture.Take(row, row, seen.width());
  }
}

void QtCanvas::Polyline(std::span<const CanvasPoint> points, Ink ink) {
  points_.clear();
  for (const CanvasPoint& point : points) points_.push_back(Device(point));
  Painter().setPen(QPen(ColourOf(ink), 0));
  Painter().drawPolyline(points_.data(), static_cast<int>(points_.size()));
}

void QtCanvas::Rectangle(CanvasPoint corner, CanvasPoint opposite, Ink ink) {
  const QRectF area = QRectF(Device(corner), Device(opposite)).normalized();
  const QPoint first(qRound(area.left()), qRound(area.top()));
  const QPoint beyond(std::max(first.x() + 1, qRound(area.right())),
                      std::max(first.y() + 1, qRound(area.bottom())));
  Fill(QRect(first, QSize(beyond.x() - first.x(), beyond.y() - first.y())), ink);
}

void QtCanvas::FillUnder(std::span<const CanvasPoint> points, float base, Ink ink) {
  const int width = image_.width(), height = image_.height();
  std::fill(tops_.begin(), tops_.end(), height);
  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    const QPointF from = Device(points[i]), to = Device(points[i + 1]);
    const double slope = to.x() > from.x() ? (to.y() - from.y()) / (to.x() - from.x()) : 0;
    const int last = std::min(width - 1, static_cast<int>(to.x()));
    for (int x = std::max(0, static_cast<int>(from.x())); x <= last; ++x) {
      const double near = std::max<double>(x, from.x()), far = std::min<double>(x + 1, to.x());
      const double top = from.y() + slope * ((slope < 0 ? far : near) - from.x());
      int& highest = tops_[static_cast<std::size_t>(x)];
      highest = std::min(highest, std::max(0, static_cast<int>(std::ceil(top))));
    }
  }
  const int bottom = std::clamp(qRound(Device({0, base}).y()), 0, height);
  const int first = *std::min_element(tops_.begin(), tops_.end());
  const Mixture mixture(skin::ColourOf(ink.Value), ink.Opacity);
  // Row by row, all columns that the fill has reached by then: what stands side by side in memory is mixed
  // together.
  for (int y = first; y < bottom; ++y) {
    QRgb* row = pixels_.data() + static_cast<std::ptrdiff_t>(y) * width;
    mixture.Take(row, mixed_.data(), width);
    const int* tops = tops_.data();
    const QRgb* mixed = mixed_.data();
    for (int x = 0; x < width; ++x) {
      const QRgb reached = y >= tops[x] ? ~QRgb{0} : 0;
      row[x] ^= (row[x] ^ mixed[x]) & reached;
    }
  }
}

void QtCanvas::Text(CanvasPoint at, std::string_view text, Ink ink, TextSide side, TextLevel level) {
  if (text.empty()) return;
  const QImage& stamp = texts_.Get(text, skin::ColourOf(ink.Value));
  const QPointF point = Device(at);
  const double seam = TextStamps::kSeam * ratio_;
  const double width = stamp.width() - 2 * seam, height = stamp.height() - 2 * seam;
  const double left = side == TextSide::Right ? 0 : side == TextSide::Left ? -width : -width / 2;
  const double top = level == TextLevel::Below ? 0 : level == TextLevel::Above ? -height : -height / 2;
  Painter().setOpacity(std::clamp(ink.Opacity, 0.0F, 1.0F));
  Painter().drawImage(QPoint(qRound(point.x() + left - seam), qRound(point.y() + top - seam)), stamp);
  Painter().setOpacity(1);
}

void QtCanvas::Image(int left, int top, int width, int height, const std::uint32_t* pixels) {
  if (width <= 0 || height <= 0) return;
  const QImage picture(reinterpret_cast<const uchar*>(pixels), width, height, 4 * qsizetype{width},
                       QImage::Format_RGB32);
  Painter().drawImage(QPoint(left, top), picture);
}

void QtCanvas::SetVisible(bool visible) {
  visible_ = visible;
  if (!visible) return;
  EndPainting();
  if (shown_) shown_();
}

}  // namespace quorl
