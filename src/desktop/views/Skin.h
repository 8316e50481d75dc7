// How the panel looks: the tones of the theme in use, its grid, its fonts, and how a control's colour number
// is shown.
#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

#include "config/ColourSchemes.h"

namespace quorl::skin {

// The grid that every distance is made of, in device-independent pixels.
constexpr int kGrid = 8;
constexpr int kButtonHeight = 24;
constexpr int kRadius = 4;

inline constexpr QRgb kScopeGround = 0xFF080B0D;
constexpr double kDisabledOpacity = 0.45;
// What stands out from its ground by at least this: a word that is switched off, the edge of a control; a
// text; a text of a theme that is all contrast.
constexpr double kOffContrast = 3, kTitleContrast = 4.5, kStrongContrast = 7;

// Blue in the high byte, as the controls carry it; pure hues are softened so that they don't burn on black,
// and so is black itself.
QColor ColourOf(Colour colour);
// As it is.
QColor PlainColourOf(Colour colour);
QColor Mixed(const QColor& a, const QColor& b, double shareOfB);
QColor Faded(QColor colour, double opacity);
// Red is for what needs care: the digit that is tuned, and what goes wrong.
bool IsAlarm(const QColor& colour);
// How far two colours stand out from each other: the ratio of their luminances over a little stray light, 1
// to 21.
double Contrast(const QColor& a, const QColor& b);
// Whether dark ink stands out from it better than white.
bool IsLight(const QColor& ground);
// The ink, with as much white in it (on a light ground: black) as it takes to stand out by `least`.
QColor Readable(const QColor& ink, const QColor& ground, double least);
// That ink on a control that is switched off: quieter, but still to be read.
QColor SwitchedOff(const QColor& ink, const QColor& ground);

// The tones of a theme. Every widget's palette carries them, and a new palette of the application brings them
// to all of them. The palette outlives the object.
class Tones {
 public:
  explicit Tones(const QPalette& palette) : palette_(palette) {}

  // Grounds: of the window between the cards, of a card, of what takes a hand on a card.
  QColor Ground() const { return At(QPalette::Window); }
  QColor Card() const { return At(QPalette::AlternateBase); }
  QColor Face() const { return At(QPalette::Base); }
  // What is dark at present, such as the rest of a meter; the line around a card; the edge of a control.
  QColor Unlit() const { return At(QPalette::Dark); }
  QColor CardLine() const { return At(QPalette::Mid); }
  QColor Edge() const { return At(QPalette::Light); }
  // Inks: of numbers and texts, of the words around them, between both.
  QColor Ink() const { return At(QPalette::WindowText); }
  QColor Quiet() const { return At(QPalette::PlaceholderText); }
  QColor Neutral() const { return Mixed(Quiet(), Ink(), 0.37); }
  // What is lit, chosen, or has the keyboard.
  QColor Accent() const { return At(QPalette::Highlight); }
  // A signal up to S9, one above it, what is too much.
  QColor Good() const { return OnCard(0xFF24CF95); }
  QColor Strong() const { return OnCard(0xFFFF9838); }
  QColor Over() const { return OnCard(0xFFFF5145); }

  bool IsLight() const { return skin::IsLight(Card()); }
  // By how much a text stands out at least.
  double TextContrast() const;
  // That ink as a text on a card.
  QColor Text(const QColor& ink) const { return Readable(ink, Card(), TextContrast()); }
  // A control's colour. The numbers of pressed and released are the theme's accent, lit and dimmed.
  QColor Of(Colour number) const;
  // The same as a text, or `otherwise` where its panel has set none.
  QColor Text(Colour number, const QColor& otherwise) const {
    return number == kNoColour ? otherwise : Text(Of(number));
  }
  // The hue of a button by its colour number: red is nothing for a button.
  QColor HueOf(Colour number) const;

 private:
  QColor At(QPalette::ColorRole role) const { return palette_.color(QPalette::Active, role); }
  QColor OnCard(QRgb colour) const { return Readable(QColor(colour), Card(), kOffContrast); }

  const QPalette& palette_;
};

// How a button is painted.
struct ButtonState {
  bool On = false, Hovered = false, Pressed = false, Off = false;  // off: switched off, whether on or not
};
struct ButtonLook {
  QColor Face, Edge, Ink;
};
ButtonLook LookOf(const Tones& tones, const QColor& hue, ButtonState state);

// Registers the fonts that the program carries; to be called once an application exists.
void LoadFonts();
QFont WordFont(int pixels = 12, bool strong = false);
QFont NumberFont(int pixels = 15);
QFont TitleFont();
// Width of the text in that font, rounded up.
int TextWidth(const QFont& font, const QString& text);

// The tones of these colours: grounds follow the background, inks stand out from it.
QPalette PaletteOf(const ColourSchemes& colours);
// For Qt's own widgets: menus, boxes, tool tips, lists. It names the palette's tones.
QString StyleSheet();

}  // namespace quorl::skin
