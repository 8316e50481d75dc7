// What stands over what in the spectrum's picture.
#include "display/scope/ScopeRig.h"

namespace quorl::test {
namespace {

// Notes what is drawn after the first text of a frame.
class OrderedCanvas : public TraceCanvas {
 public:
  using TraceCanvas::TraceCanvas;
  void Line(CanvasPoint, CanvasPoint, Ink) override { OverTexts += Texts.empty() ? 0 : 1; }
  void Polyline(std::span<const CanvasPoint> points, Ink ink) override {
    OverTexts += Texts.empty() ? 0 : 1;
    TraceCanvas::Polyline(points, ink);
  }
  void Clear(Colour colour) override {
    OverTexts = 0;
    TraceCanvas::Clear(colour);
  }
  int OverTexts = 0;
};

TEST(ScopeLayers, NoTraceTickOrCursorStrikesATextThrough) {
  ScopeRig rig("[Scope]\nNames=True\nBandShading=True\nLevelView=True\nCursor=True\nPassband=True\n");
  rig.scope.Marks.Source = [](double, double, ScopeMarks& marks) {
    for (int i = 0; i < 60; ++i) marks.Marks.push_back({7193000.0 + 400.0 * i, "Station"});
    marks.Spans.push_back({7000000, 7200000, "Amateurs"});
  };
  OrderedCanvas front(ScopeRig::kWidth, ScopeRig::kHeight), back(ScopeRig::kWidth, ScopeRig::kHeight);
  rig.scope.picScope.SetSurfaces(&front, &back);
  for (const char* level : {"1", "0"}) {
    if (level[0] == '0') rig.Choose("mnuScope", "Level view");
    for (int i = 0; i < 2; ++i) {
      rig.Play(12000.0);
      rig.scope.Periodic();
    }
    const OrderedCanvas& seen = front.Visible ? front : back;
    EXPECT_GT(seen.Texts.size(), 20U);
    EXPECT_EQ(seen.OverTexts, 0) << level;
  }
  rig.scope.picScope.SetSurfaces(nullptr, nullptr);
}

}  // namespace
}  // namespace quorl::test
