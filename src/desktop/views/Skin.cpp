#include "desktop/views/Skin.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QPalette>
#include <algorithm>
#include <cmath>

static void InitFontResource() {
  Q_INIT_RESOURCE(fonts);
}

namespace quorl::skin {

QColor ColourOf(Colour colour) {
  const QColor plain(static_cast<int>(colour & 0xFF), static_cast<int>(colour >> 8 & 0xFF),
                     static_cast<int>(colour >> 16 & 0xFF));
  float hue = 0, saturation = 0, value = 0;
  plain.getHsvF(&hue, &saturation, &value);
  if (saturation < 0.9F) return plain;
  // Red and blue are dark to the eye, so they are the ones that take some white.
  const float fromCyan = std::abs(hue - 0.5F) * 2;
  const float fromGreen = std::abs(hue - 1.0F / 3) * 2;
  const float white = std::clamp(std::min(fromCyan, fromGreen) * 0.36F, 0.03F, 0.28F);
  return QColor::fromHsvF(hue, saturation * (1 - white), value * (white > 0.2F ? 1.0F : 0.9F));
}

QColor ColourOf(Colour colour, QRgb fallback) {
  return colour == 0 ? QColor(fallback) : ColourOf(colour);
}

QColor Mixed(const QColor& a, const QColor& b, double shareOfB) {
  const auto mix = [shareOfB](int x, int y) { return static_cast<int>(std::lround(x + (y - x) * shareOfB)); };
  return QColor(mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue()));
}

QColor Faded(QColor colour, double opacity) {
  colour.setAlphaF(static_cast<float>(opacity));
  return colour;
}

namespace {

// Share of the light that white gives.
double Luminance(const QColor& colour) {
  const auto linear = [](float part) {
    return part <= 0.04045F ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

}  // namespace

double Contrast(const QColor& a, const QColor& b) {
  constexpr double kStrayLight = 0.05;
  const auto [dark, light] = std::minmax({Luminance(a), Luminance(b)});
  return (light + kStrayLight) / (dark + kStrayLight);
}

QColor Readable(const QColor& ink, const QColor& ground, double least) {
  QColor shown = ink;
  for (double white = 0; white < 1 && Contrast(shown, ground) < least; white += 0.05) {
    shown = Mixed(ink, Qt::white, white);
  }
  return shown;
}

QColor SwitchedOff(const QColor& ink, const QColor& ground) {
  return Readable(Mixed(ground, ink, kDisabledOpacity), ground, kOffContrast);
}

bool IsAlarm(const QColor& colour) {
  constexpr float kReach = 1.0F / 24;  // of the circle of hues
  const float hue = colour.hueF();
  return colour.hsvSaturationF() > 0.6F && (hue < kReach || hue > 1 - kReach);
}

void LoadFonts() {
  InitFontResource();
  for (const char* file : {"Inter-Regular.otf", "Inter-SemiBold.otf", "JetBrainsMono-Medium.ttf"}) {
    QFontDatabase::addApplicationFont(QString(":/fonts/") + file);
  }
}

QFont WordFont(int pixels, bool strong) {
  QFont font(QStringList{"Inter", "Noto Sans", "DejaVu Sans"});
  font.setPixelSize(pixels);
  font.setWeight(strong ? QFont::DemiBold : QFont::Normal);
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

QFont NumberFont(int pixels) {
  QFont font(QStringList{"JetBrains Mono", "Noto Sans Mono", "DejaVu Sans Mono"});
  font.setPixelSize(pixels);
  font.setWeight(QFont::Medium);
  font.setStyleHint(QFont::Monospace);
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

QFont TitleFont() {
  QFont font = WordFont(10, true);
  font.setLetterSpacing(QFont::AbsoluteSpacing, 1.1);
  return font;
}

int TextWidth(const QFont& font, const QString& text) {
  return static_cast<int>(std::ceil(QFontMetricsF(font).horizontalAdvance(text)));
}

QPalette Palette() {
  QPalette palette;
  palette.setColor(QPalette::Window, QColor(kGround));
  palette.setColor(QPalette::Base, QColor(kFace));
  palette.setColor(QPalette::AlternateBase, QColor(kCard));
  palette.setColor(QPalette::Button, QColor(kCard));
  for (const auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, QColor(kInk));
    palette.setColor(QPalette::Disabled, role, QColor(kQuietInk));
  }
  palette.setColor(QPalette::ToolTipBase, QColor(kCard));
  palette.setColor(QPalette::PlaceholderText, QColor(kQuietInk));
  palette.setColor(QPalette::Highlight, QColor(kAccent));
  palette.setColor(QPalette::HighlightedText, QColor(kDarkInk));
  return palette;
}

QString StyleSheet() {
  return QStringLiteral(
      "QToolTip { background: #1b2329; color: #e9eff2; border: 1px solid #34414a; padding: 4px 8px; }"
      "QMenu { background: #12171b; color: #e9eff2; border: 1px solid #2a343b; padding: 4px; }"
      "QMenu::item { padding: 5px 24px 5px 16px; border-radius: 3px; }"
      "QMenu::item:selected { background: #06e4e4; color: #061012; }"
      "QMenu::item:disabled { color: #84929d; }"
      "QMenu::separator { height: 1px; background: #2a343b; margin: 4px 8px; }"
      "QListView, QLineEdit { background: #0d1114; color: #e9eff2; border: 1px solid #20282e;"
      " border-radius: 4px; padding: 2px 6px; selection-background-color: #12494c;"
      " selection-color: #e9eff2; outline: none; }"
      "QScrollBar:vertical { background: transparent; width: 8px; margin: 0; }"
      "QScrollBar::handle:vertical { background: #2a343b; border-radius: 4px; min-height: 24px; }"
      "QScrollBar::add-line, QScrollBar::sub-line { height: 0; width: 0; }"
      "QScrollBar:horizontal { background: transparent; height: 8px; margin: 0; }"
      "QScrollBar::handle:horizontal { background: #2a343b; border-radius: 4px; min-width: 24px; }");
}

}  // namespace quorl::skin
