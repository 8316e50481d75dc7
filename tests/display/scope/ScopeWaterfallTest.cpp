// The waterfall under the spectrum, as the panel feeds, shows and scrolls it.
#include "display/scope/ScopeRig.h"

namespace quorl::test {
namespace {

struct WaterfallRig : ScopeRig {
  explicit WaterfallRig(const std::string& stored = "[Scope]\nWaterfall=True\nCursor=True\n")
      : ScopeRig(stored) {
    Picture().SetPlace({0, kHeight, kWidth, 200});
    Picture().SetSurfaces(&upper, &lower);
    Set("chkSmoothSpectrum", "0");
  }
  CanvasPicture& Picture() { return scope.picWaterfall; }
  const Waterfall& Shown() { return scope.Waterfall.Shown(); }
  // So many blocks at their pace.
  void PlayOn(int blocks) {
    for (int i = 0; i < blocks; ++i) {
      Play(9000.0);
      queue.AdvanceBy(std::chrono::microseconds(32667));
    }
  }
  void DragAxis(double from, double to) {
    hand::Drag(Picture(), {.X = 0.02, .Y = from, .Button = MouseButton::Left},
               {.X = 0.02, .Y = to, .Button = MouseButton::Left}, [] {});
  }

  TraceCanvas upper{kWidth, 200}, lower{kWidth, 200};
};

TEST(ScopeWaterfall, CollectsWhileItIsSeenOnly) {
  WaterfallRig rig;
  rig.PlayOn(10);
  EXPECT_EQ(rig.Shown().History().Count(), 10);
  EXPECT_TRUE(rig.upper.Visible != rig.lower.Visible);
  rig.Choose("mnuScope", "Waterfall");
  EXPECT_FALSE(rig.Seen("picWaterfall"));
  EXPECT_FALSE(rig.Seen("sldScopeSplit"));
  rig.PlayOn(10);
  rig.Choose("mnuScope", "Waterfall");
  EXPECT_EQ(rig.Shown().History().Count(), 10);
  rig.Click("chkScopeMode(1)");
  EXPECT_FALSE(rig.Seen("picWaterfall"));
  rig.PlayOn(3);
  rig.Click("chkScopeMode(0)");
  rig.Set("chkScopeFreeze", "1");
  rig.PlayOn(3);
  EXPECT_EQ(rig.Shown().History().Count(), 10);
  rig.Set("chkScopeFreeze", "0");
  rig.Choose("mnuWaterfall", "4 blocks a line");
  rig.Choose("mnuWaterfall", "Grey");
  rig.Set("lblScopeFloor", "-90");
  EXPECT_EQ(rig.Shown().Options().BlocksPerLine, 4);
  EXPECT_EQ(rig.Shown().Options().Colours, Palette::Grey);
  EXPECT_EQ(rig.Shown().Options().Floor, -90.0);
}

TEST(ScopeWaterfall, ItsTimeAxisScrollsAndTheRestOfItTunes) {
  WaterfallRig rig;
  rig.PlayOn(300);
  const int rows = rig.Shown().Rows();
  rig.DragAxis(0.8, 0.3);
  EXPECT_NEAR(double(rig.Shown().LinesBack()), rows / 2, 1);
  rig.DragAxis(0.3, 0.55);
  EXPECT_NEAR(double(rig.Shown().LinesBack()), rows / 4, 1);
  hand::DoubleClick(rig.Picture(), {.X = 0.02, .Y = 0.5});
  EXPECT_EQ(rig.Shown().LinesBack(), 0);
  EXPECT_EQ(rig.tunings, 0);
  hand::Click(rig.Picture(), {.X = 0.75, .Y = 0.5, .Button = MouseButton::Left});
  EXPECT_NEAR(rig.tuned / 10.0, 7193000 + 0.75 * 1023 * 23.4375, 1.0);
}

TEST(ScopeWaterfall, TheCursorReadsWhatWasThere) {
  WaterfallRig rig;
  rig.PlayOn(50);
  const double share = 640.0 / 1023.0;  // the tone's bin
  hand::Hover(rig.Picture(), {.X = share, .Y = 0.05});
  const auto time = rig.Shown().TimeAt(0.05);
  ASSERT_TRUE(time);
  EXPECT_EQ(rig.Text("lblScopeCursor"), "7 208 000 Hz  -6.0 dB  " + UtcText(*time) + " UTC");
  EXPECT_EQ(rig.Text("lblSpectrumFreq"), "7 208 000");
  EXPECT_EQ(rig.scope.Pointer.lblSpectrumFreq.Over(), &rig.Picture());
  hand::Hover(rig.Picture(), {.X = share, .Y = 0.9});  // older than all there is
  EXPECT_EQ(rig.Text("lblScopeCursor"), "7 208 000 Hz  -6.0 dB");
}

}  // namespace
}  // namespace quorl::test
