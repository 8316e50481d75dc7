#include "desktop/views/Skin.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QPalette>
#include <algorithm>
#include <array>
#include <cmath>

static void InitFontResource() {
  Q_INIT_RESOURCE(fonts);
}

namespace quorl::skin {

QColor PlainColourOf(Colour colour) {
  return QColor(static_cast<int>(colour & 0xFF), static_cast<int>(colour >> 8 & 0xFF),
                static_cast<int>(colour >> 16 & 0xFF));
}

QColor ColourOf(Colour colour) {
  if (colour == 0) return QColor(kScopeGround);
  const QColor plain = PlainColourOf(colour);
  float hue = 0, saturation = 0, value = 0;
  plain.getHsvF(&hue, &saturation, &value);
  if (saturation < 0.9F) return plain;
  // Red and blue are dark to the eye, so they are the ones that take some white.
  const float fromCyan = std::abs(hue - 0.5F) * 2;
  const float fromGreen = std::abs(hue - 1.0F / 3) * 2;
  const float white = std::clamp(std::min(fromCyan, fromGreen) * 0.36F, 0.03F, 0.28F);
  return QColor::fromHsvF(hue, saturation * (1 - white), value * (white > 0.2F ? 1.0F : 0.9F));
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

// What each of the 256 steps of a colour's part gives of its light.
std::array<double, 256> LightOfSteps() {
  std::array<double, 256> light{};
  for (std::size_t step = 0; step < light.size(); ++step) {
    const double part = static_cast<double>(step) / 255;
    light[step] = part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  }
  return light;
}

// Share of the light that white gives.
double Luminance(const QColor& colour) {
  static const std::array<double, 256> kLight = LightOfSteps();
  const auto light = [](int part) { return kLight[static_cast<std::size_t>(part)]; };
  return 0.2126 * light(colour.red()) + 0.7152 * light(colour.green()) + 0.0722 * light(colour.blue());
}

QColor Moved(const QColor& colour, int red, int green, int blue) {
  const auto within = [](int part) { return std::clamp(part, 0, 255); };
  return QColor(within(colour.red() + red), within(colour.green() + green), within(colour.blue() + blue));
}

// The farthest that an ink on that ground can go.
QColor FarFrom(const QColor& ground) {
  return IsLight(ground) ? Qt::black : Qt::white;
}

}  // namespace

double Contrast(const QColor& a, const QColor& b) {
  constexpr double kStrayLight = 0.05;
  const auto [dark, light] = std::minmax({Luminance(a), Luminance(b)});
  return (light + kStrayLight) / (dark + kStrayLight);
}

bool IsLight(const QColor& ground) {
  return Contrast(ground, Qt::black) > Contrast(ground, Qt::white);
}

QColor Readable(const QColor& ink, const QColor& ground, double least) {
  constexpr int kSteps = 20;
  QColor shown = ink;
  for (int step = 1; step <= kSteps && Contrast(shown, ground) < least; ++step) {
    shown = Mixed(ink, FarFrom(ground), double(step) / kSteps);
  }
  return shown;
}

QColor SwitchedOff(const QColor& ink, const QColor& ground) {
  return Readable(Mixed(ground, ink, kDisabledOpacity), ground, kOffContrast);
}

double Tones::TextContrast() const {
  // Words that stand out as plainly as this are meant for eyes that need it.
  constexpr double kPlain = 12;
  return Contrast(Quiet(), Ground()) < kPlain ? kTitleContrast : kStrongContrast;
}

QColor Tones::Of(Colour number) const {
  if (number == kSelectedColour) return Accent();
  if (number == kUnselectedColour || number == kNoColour) return Mixed(Accent(), Qt::black, 0.25);
  return ColourOf(number);
}

QColor Tones::HueOf(Colour number) const {
  const QColor hue = Of(number);
  return IsAlarm(hue) ? Neutral() : hue;
}

namespace {

// What is lit stands out from the card, and its caption from what is lit.
ButtonLook LitLook(const Tones& tones, const QColor& hue, ButtonState state) {
  const QColor dark(0x06, 0x10, 0x12);
  QColor face = Readable(hue, tones.Card(), kOffContrast);
  if (state.Hovered) face = Mixed(face, Qt::white, 0.15);
  if (state.Pressed) face = Mixed(face, Qt::black, 0.25);
  const QColor ink = IsLight(face) ? dark : QColor(Qt::white);
  const QColor away = IsLight(face) ? Qt::white : Qt::black;
  for (int step = 0; step < 20 && Contrast(ink, face) < tones.TextContrast(); ++step)
    face = Mixed(face, away, 0.05);
  return {face, Readable(face, tones.Card(), kOffContrast), ink};
}

ButtonLook OffLook(const Tones& tones, const QColor& hue, bool on) {
  const QColor face = Mixed(tones.Card(), hue, on ? 0.2 : 0.02);
  const QColor edge = Mixed(tones.Card(), hue, on ? 0.4 : 0.2);
  return {face, edge, SwitchedOff(Mixed(hue, FarFrom(face), 0.45), face)};
}

}  // namespace

ButtonLook LookOf(const Tones& tones, const QColor& hue, ButtonState state) {
  if (state.Off) return OffLook(tones, hue, state.On);
  if (state.On) return LitLook(tones, hue, state);
  QColor face = Mixed(tones.Face(), hue, state.Hovered ? 0.16 : 0.04);
  if (state.Pressed) face = Mixed(face, Qt::black, 0.25);
  return {face, Readable(Mixed(tones.Face(), hue, 0.55), tones.Card(), kOffContrast),
          Readable(Mixed(hue, FarFrom(face), 0.45), face, tones.TextContrast())};
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

QPalette PaletteOf(const ColourSchemes& colours) {
  const QColor background = PlainColourOf(colours.SDRBackgroundColour);
  const bool light = IsLight(background);
  // Black is lifted a little, so that a card has room below it; on paper a card is the whiter sheet.
  const QColor ground = light ? background : Moved(background, 9, 12, 15);
  const QColor card = light ? Mixed(background, Qt::white, 0.65) : Moved(background, 18, 23, 27);
  const QColor face = light ? Mixed(background, Qt::white, 0.9) : Moved(background, 13, 17, 20);
  const QColor unlit = light ? Mixed(background, Qt::black, 0.07) : Moved(background, 27, 35, 41);
  const QColor line = light ? Mixed(background, Qt::black, 0.14) : Moved(background, 32, 40, 46);
  // What is read on a card can be read beside it, too.
  const QColor& hardest = light ? ground : unlit;
  const auto readable = [&](Colour colour) { return Readable(ColourOf(colour), hardest, kTitleContrast); };
  const QColor ink = readable(colours.ScrollableLabelNormalColour);
  const QColor quiet = Readable(Mixed(readable(colours.SDRLabelColour), card, 0.09), hardest, kTitleContrast);
  const QColor accent = Readable(ColourOf(colours.SDRFrameFocusColour), hardest, kOffContrast);

  QPalette palette;
  palette.setColor(QPalette::Window, ground);
  palette.setColor(QPalette::Base, face);
  palette.setColor(QPalette::AlternateBase, card);
  palette.setColor(QPalette::Button, card);
  palette.setColor(QPalette::Dark, unlit);
  palette.setColor(QPalette::Mid, line);
  palette.setColor(QPalette::Midlight, Mixed(face, accent, 0.3));
  palette.setColor(QPalette::Light, Readable(Mixed(face, quiet, 0.5), light ? ground : card, kOffContrast));
  palette.setColor(QPalette::Shadow, Mixed(ground, Qt::black, 0.5));
  for (const auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, ink);
    palette.setColor(QPalette::Disabled, role, SwitchedOff(ink, card));
  }
  palette.setColor(QPalette::ToolTipBase, unlit);
  for (const auto role : {QPalette::PlaceholderText, QPalette::BrightText}) palette.setColor(role, quiet);
  palette.setColor(QPalette::Highlight, accent);
  palette.setColor(QPalette::HighlightedText, IsLight(accent) ? QColor(0x06, 0x10, 0x12) : QColor(Qt::white));
  palette.setColor(QPalette::Link, Readable(accent, card, kTitleContrast));
  return palette;
}

QString StyleSheet() {
  return QStringLiteral(
      "QToolTip { background: palette(dark); color: palette(text);"
      " border: 1px solid palette(light); padding: 4px 8px; }"
      "QMenu { background: palette(alternate-base); color: palette(text); border: 1px solid palette(light);"
      " padding: 4px; }"
      "QMenu::item { padding: 5px 24px 5px 16px; border-radius: 3px; }"
      "QMenu::item:selected { background: palette(highlight); color: palette(highlighted-text); }"
      "QMenu::item:disabled { color: palette(bright-text); }"
      "QMenu::separator { height: 1px; background: palette(mid); margin: 4px 8px; }"
      "QListView, QLineEdit { background: palette(base); color: palette(text);"
      " border: 1px solid palette(light); border-radius: 4px; padding: 2px 6px;"
      " selection-background-color: palette(midlight); selection-color: palette(text); outline: none; }"
      "QLineEdit:disabled { color: palette(bright-text); border-color: palette(mid); }"
      "QScrollBar:vertical { background: transparent; width: 8px; margin: 0; }"
      "QScrollBar::handle:vertical { background: palette(light); border-radius: 4px; min-height: 24px; }"
      "QScrollBar::add-line, QScrollBar::sub-line { height: 0; width: 0; }"
      "QScrollBar:horizontal { background: transparent; height: 8px; margin: 0; }"
      "QScrollBar::handle:horizontal { background: palette(light); border-radius: 4px; min-width: 24px; }"
      "QPushButton { background: palette(base); color: palette(text); border: 1px solid palette(light);"
      " border-radius: 4px; padding: 4px 14px; min-width: 56px; }"
      "QPushButton:default { border-color: palette(highlight); }"
      "QPushButton:hover, QPushButton:focus { background: palette(midlight); }"
      "QPushButton:disabled { color: palette(bright-text); border-color: palette(mid); }");
}

}  // namespace quorl::skin
