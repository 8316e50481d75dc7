// Texts as small pictures, each with a seam in the colour of the ground, so that it is read over anything.
#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <string>
#include <string_view>
#include <unordered_map>

namespace quorl {

// Laying a text out takes longer than a whole trace, and most texts of a picture stay from frame to frame.
class TextStamps {
 public:
  static constexpr int kSeam = 2;  // pixels around the text

  TextStamps();

  // Device pixels a pixel; another one begins anew.
  void SetRatio(double ratio);
  // What the letters stand on where nothing else is.
  void SetGround(const QColor& ground) { ground_ = ground; }
  // The text with its seam around it; valid until the next call.
  const QImage& Get(std::string_view text, const QColor& ink);
  // Pixels, without the seam.
  int Width(std::string_view text);
  int Height() const { return height_; }

 private:
  struct Key {
    std::string Text;
    QRgb Ink, Ground;
  };
  struct Asked {
    std::string_view Text;
    QRgb Ink, Ground;
  };
  struct Hash {
    using is_transparent = void;
    template <class K>
    std::size_t operator()(const K& key) const {
      return std::hash<std::string_view>{}(key.Text) ^ key.Ink * std::size_t{31} ^ key.Ground;
    }
  };
  struct Same {
    using is_transparent = void;
    template <class A, class B>
    bool operator()(const A& a, const B& b) const {
      return a.Text == b.Text && a.Ink == b.Ink && a.Ground == b.Ground;
    }
  };
  QImage Draw(const QString& text, const QColor& ink) const;

  QFont font_;
  int height_ = 0;
  double ascent_ = 0;
  double ratio_ = 1;
  QColor ground_;
  std::unordered_map<Key, QImage, Hash, Same> stamps_;
};

}  // namespace quorl
