#include "support/NumberPicture.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace quorl {
namespace {

constexpr bool IsPlace(char c) {
  return c == '0' || c == '#';
}

struct Shape {
  int WholePlaces = 0;
  int DecimalPlaces = 0;
  std::size_t Point = std::string_view::npos;
  bool Grouped = false;
  bool Percent = false;
};

Shape ShapeOf(std::string_view picture) {
  Shape shape;
  bool comma = false;
  for (std::size_t i = 0; i < picture.size(); ++i) {
    const char c = picture[i];
    if (IsPlace(c)) {
      ++(shape.Point == std::string_view::npos ? shape.WholePlaces : shape.DecimalPlaces);
      shape.Grouped = shape.Grouped || comma;
    } else if (c == ',') {
      comma = comma || (shape.WholePlaces > 0 && shape.Point == std::string_view::npos);
    } else if (c == '.' && shape.Point == std::string_view::npos) {
      shape.Point = i;
      comma = false;
    } else if (c == '%') {
      shape.Percent = true;
    }
  }
  return shape;
}

struct Decimal {
  std::string Whole;     // no leading zeros, so empty below 1
  std::string Fraction;  // exactly as many digits as asked for
};

// `magnitude` to `places` decimals.
Decimal RoundHalfAway(double magnitude, int places) {
  std::array<char, 32> text;  // d.dddddddddddddde+xx
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), magnitude, std::chars_format::scientific, 14).ptr;
  const auto mark = std::find(text.data(), end, 'e');
  int exponent = 0;
  std::from_chars(mark[1] == '+' ? mark + 2 : mark + 1, end, exponent);
  std::string digits(text.data(), mark);
  digits.erase(1, 1);

  int wholeDigits = exponent + 1;
  if (wholeDigits < 0) {
    digits.insert(0, static_cast<std::size_t>(-wholeDigits), '0');
    wholeDigits = 0;
  }
  const auto kept = static_cast<std::size_t>(wholeDigits + places);
  const bool up = kept < digits.size() && digits[kept] >= '5';
  digits.resize(kept, '0');
  if (up) {
    auto digit = digits.rbegin();
    for (; digit != digits.rend() && *digit == '9'; ++digit) *digit = '0';
    if (digit == digits.rend()) {
      digits.insert(0, 1, '1');
      ++wholeDigits;
    } else {
      ++*digit;
    }
  }
  const auto point = static_cast<std::size_t>(wholeDigits);
  Decimal result{digits.substr(0, point), digits.substr(point)};
  result.Whole.erase(0, std::min(result.Whole.find_first_not_of('0'), result.Whole.size()));
  return result;
}

// Appends the digits of one whole-number place, and of all before it where it is the first.
class WholeWriter {
 public:
  WholeWriter(std::string& text, const std::string& whole, const Shape& shape)
      : text_(text), whole_(whole), grouped_(shape.Grouped), placesLeft_(shape.WholePlaces) {}

  void Place(char place) {
    const int digits = static_cast<int>(whole_.size());
    for (int left = std::max(first_ ? digits : 0, placesLeft_); left >= placesLeft_; --left) {
      if (left <= digits) {
        Digit(whole_[static_cast<std::size_t>(digits - left)], left);
      } else if (place == '0' || started_) {
        Digit('0', left);
      }
    }
    first_ = false;
    --placesLeft_;
  }

 private:
  void Digit(char digit, int left) {
    started_ = true;
    text_ += digit;
    if (grouped_ && left > 1 && left % 3 == 1) text_ += ',';
  }

  std::string& text_;
  const std::string& whole_;
  bool grouped_;
  bool first_ = true;
  bool started_ = false;
  int placesLeft_;
};

}  // namespace

std::string FormatPicture(double value, std::string_view picture) {
  if (!std::isfinite(value)) return std::isnan(value) ? "NaN" : value < 0 ? "-Inf" : "Inf";
  const Shape shape = ShapeOf(picture);
  const Decimal number = RoundHalfAway(std::fabs(shape.Percent ? value * 100 : value), shape.DecimalPlaces);
  const bool isZero = number.Whole.empty() && number.Fraction.find_first_not_of('0') == std::string::npos;
  const std::size_t significant = number.Fraction.find_last_not_of('0') + 1;  // 0 where there is none

  std::string text = value < 0 && !isZero ? "-" : "";
  WholeWriter whole(text, number.Whole, shape);
  std::size_t decimal = 0;
  for (std::size_t i = 0; i < picture.size(); ++i) {
    const char c = picture[i];
    if (!IsPlace(c)) {
      if (c != ',' || !shape.Grouped || i > shape.Point) text += c;
    } else if (i < shape.Point) {
      whole.Place(c);
    } else {
      if (c == '0' || decimal < significant) text += number.Fraction[decimal];
      ++decimal;
    }
  }
  return text;
}

}  // namespace quorl
