// Names and shaded spans in the picture; a click on a name tunes to it.
#pragma once

#include <array>

#include "display/scope/ScopeContext.h"
#include "display/scope/ScopeGrip.h"
#include "display/scope/ScopeMarks.h"
#include "display/scope/ScopeOptions.h"

namespace quorl {

class MarksLayer : public ScopeLayer, public ScopeGrip {
 public:
  MarksLayer(const ScopeContext& context, const ScopeOptions& options)
      : context_(context), options_(options) {}

  // Null for none.
  MarkSource Source;
  // Asks the source again, where another part of the band has come into sight or `anew` says so. Not from
  // within a frame.
  void Refresh(bool anew = false);

  void Draw(Canvas& canvas, const ScopeFrame& frame) override;
  bool Press(const ScopePlace& place) override;

 private:
  static constexpr int kRows = 3;
  static constexpr std::size_t kMostTexts = 128;
  // Where a text stands, in pixels.
  struct Standing {
    double Left = 0, Top = 0, Right = 0, Bottom = 0;
    double Hertz = 0;
    std::size_t Mark = 0;  // of marks_
  };

  double LeftOfAll(const Canvas& canvas, const ScopeFrame& frame) const;
  void DrawSpans(Canvas& canvas, const ScopeFrame& frame);
  void DrawTicks(Canvas& canvas, const ScopeFrame& frame);
  void NameSpans(Canvas& canvas, const ScopeFrame& frame);
  void NameMarks(Canvas& canvas, const ScopeFrame& frame);

  ScopeContext context_;
  const ScopeOptions& options_;
  ScopeMarks marks_;
  double low_ = 0, high_ = 0;  // what marks_ holds, Hz
  std::array<Standing, kMostTexts> standing_;
  std::size_t standings_ = 0;
};

}  // namespace quorl
