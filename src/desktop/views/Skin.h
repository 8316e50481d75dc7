// How the panel looks: its quiet colours, its grid, its fonts, and how a control's colour number is shown.
#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

#include "controls/Control.h"

namespace quorl::skin {

// The grid that every distance is made of, in device-independent pixels.
constexpr int kGrid = 8;
constexpr int kButtonHeight = 24;
constexpr int kRadius = 4;

// What a button's colour numbers mean where a panel has set none.
constexpr Colour kSelected = 0xFFFF00, kUnselected = 0xC0C000;

inline constexpr QRgb kGround = 0xFF090C0F, kCard = 0xFF12171B, kFace = 0xFF0D1114, kCardEdge = 0xFF20282E;
inline constexpr QRgb kQuietInk = 0xFF84929D, kInk = 0xFFE9EFF2, kDarkInk = 0xFF061012, kUnlit = 0xFF1B2329;
inline constexpr QRgb kNeutral = 0xFFA9B7C0, kScopeGround = 0xFF080B0D;
inline constexpr QRgb kAccent = 0xFF06E4E4, kGood = 0xFF24CF95, kStrong = 0xFFFF9838, kOver = 0xFFFF5145;
constexpr double kDisabledOpacity = 0.45;
// What a word at least stands out from its ground: one that is switched off, a title.
constexpr double kOffContrast = 3, kTitleContrast = 4.5;

// Blue in the high byte, as the controls carry it; pure hues are softened so that they don't burn on black.
QColor ColourOf(Colour colour);
// The same, or `fallback` for a control whose panel has set no colour.
QColor ColourOf(Colour colour, QRgb fallback);
QColor Mixed(const QColor& a, const QColor& b, double shareOfB);
QColor Faded(QColor colour, double opacity);
// Red is for what needs care: the digit that is tuned, and what goes wrong.
bool IsAlarm(const QColor& colour);
// How far two colours stand out from each other: the ratio of their luminances over a little stray light, 1
// to 21.
double Contrast(const QColor& a, const QColor& b);
// The ink, with as much white in it as it takes to stand out from a dark ground by `least`.
QColor Readable(const QColor& ink, const QColor& ground, double least);
// That ink on a control that is switched off: quieter, but still to be read.
QColor SwitchedOff(const QColor& ink, const QColor& ground);

// Registers the fonts that the program carries; to be called once an application exists.
void LoadFonts();
QFont WordFont(int pixels = 12, bool strong = false);
QFont NumberFont(int pixels = 15);
QFont TitleFont();
// Width of the text in that font, rounded up.
int TextWidth(const QFont& font, const QString& text);

// For Qt's own widgets: menus, boxes, tool tips, lists.
QPalette Palette();
QString StyleSheet();

}  // namespace quorl::skin
