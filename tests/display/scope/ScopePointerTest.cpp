// The hand over the pictures: what it reads, tunes, zooms, pans and drags.
#include "display/scope/ScopeRig.h"

namespace quorl::test {
namespace {

constexpr double kHertzPerBin = 23.4375;

TEST(ScopeWindow, SlidersAndEntriesMoveTogether) {
  ScopeRig rig;
  EXPECT_EQ(rig.analyser.StartX, 0);
  EXPECT_EQ(rig.analyser.StopX, 1023);
  rig.Set("sldXWidth", "50");
  rig.Set("sldXCentre", "512");
  EXPECT_EQ(rig.Text("lblScopeXWidth"), "50");
  EXPECT_EQ(rig.Text("lblScopeXCentre"), "512");
  EXPECT_EQ(rig.analyser.StartX, 487);
  EXPECT_EQ(rig.analyser.StopX, 537);
  EXPECT_EQ(rig.At("sldXWidth").ToolTip(), "Spectrum Width : 98 Hz/div");
  EXPECT_EQ(rig.At("sldXCentre").ToolTip(), "Center Frequency : 7,205,000 Hz");
  rig.Wheel("lblScopeXWidth", 1, {.Ctrl = true});
  EXPECT_EQ(rig.Text("sldXWidth"), "51");
  EXPECT_EQ(rig.analyser.StartX, 487);
  EXPECT_EQ(rig.analyser.StopX, 538);
  rig.Set("sldXWidth", "3");  // nothing narrower than ten
  EXPECT_EQ(rig.analyser.StopX - rig.analyser.StartX, 10);
  EXPECT_EQ(rig.Text("lblScopeXWidth"), "10");
  rig.Set("sldXCentre", "0");
  EXPECT_EQ(rig.analyser.StartX, 0);
  EXPECT_EQ(rig.analyser.StopX, 5);
  hand::Click(rig.At("sldXWidth"), {.Button = MouseButton::Right});
  hand::Click(rig.At("sldXCentre"), {.Button = MouseButton::Right});
  EXPECT_EQ(rig.Text("sldXWidth"), "1023");
  EXPECT_EQ(rig.Text("sldXCentre"), "512");
  EXPECT_EQ(rig.analyser.StopX, 1023);
  rig.Click("chkScopeMode(1)");
  rig.Set("sldXWidth", "960");
  EXPECT_EQ(rig.analyser.DisplayWidth, 960);
  EXPECT_EQ(rig.analyser.StopX, 959);
  EXPECT_EQ(rig.At("sldXWidth").ToolTip(), "Timebase : 01.66 mS/div");
  rig.Click("chkScopeMode(2)");
  EXPECT_EQ(rig.analyser.StopBin(), 959);  // the window of the time picture as it last stood
  rig.Click("chkScopeMode(0)");
  EXPECT_EQ(rig.analyser.StopX - rig.analyser.StartX, 960);
}

TEST(ScopePointer, TheFrequencyUnderItStaysInThePictureAndFollowsTheTuning) {
  ScopeRig rig;
  rig.Play(12000.0);
  rig.Hover(0.25, 0.5);
  const std::string at = "7 198 994";  // a quarter of 1023 bins above 7193 kHz
  EXPECT_EQ(rig.Text("lblSpectrumFreq"), at);
  EXPECT_TRUE(rig.Seen("lblSpectrumFreq"));
  EXPECT_EQ(rig.At("picScope").Tag().substr(0, 7), "7198994");
  FloatingLabel& label = rig.scope.Pointer.lblSpectrumFreq;
  EXPECT_EQ(label.Left(), 267);
  EXPECT_EQ(label.Top(), 200);
  label.SetPlace({0, 0, 90, 20});
  rig.Hover(0.99, 0.5);
  EXPECT_EQ(label.Left(), ScopeRig::kWidth - 90);
  label.SetPlace({0, 0, 120, 20});  // it grows under the pointer
  EXPECT_EQ(label.Left(), ScopeRig::kWidth - 120);
  rig.Hover(0.25, 0.5);
  rig.tuned += 10000;
  rig.Play(12000.0);
  rig.scope.Periodic();
  EXPECT_EQ(rig.Text("lblSpectrumFreq"), "7 199 994");
  rig.mouse.DarkenControls();  // the pointer is elsewhere
  rig.scope.Periodic();
  EXPECT_FALSE(rig.Seen("lblSpectrumFreq"));
  rig.analyser.HideFreqToolTip = true;
  rig.Press(0.25, 0.5);
  EXPECT_FALSE(rig.Seen("lblSpectrumFreq"));
  EXPECT_EQ(rig.tuned, 71999940);
}

TEST(ScopePointer, AClickTunesWhereTheScaleIsOnTheAirOnly) {
  for (const bool low : {false, true}) {
    ScopeRig rig;
    rig.radio.SetLowSideLO(low);
    rig.Play(12000.0);
    rig.Press(0.75, 0.5);
    // The scale rises from left to right on both sides.
    EXPECT_NEAR(rig.tuned / 10.0, 7193000 + 0.75 * 1023 * kHertzPerBin, 1.0) << low;
    EXPECT_EQ(rig.tuned % 10, 0);
    rig.Press(0.75, 0.5, {}, MouseButton::Middle);
    EXPECT_EQ(rig.tunings, 1);
  }
  for (const char* what : {"optSpectrumSource(3)", "chkScopeMode(1)", "chkScopeMode(2)"}) {
    ScopeRig rig;
    rig.Click(what);
    rig.Play(12000.0);
    rig.Press(0.75, 0.5);
    EXPECT_EQ(rig.tunings, 0) << what;
  }
}

// Where half the picture lies below 0 Hz, a place is no frequency to tune to.
TEST(ScopePointer, APictureThatReachesBelowZeroTunesNothing) {
  ScopeRig rig;
  rig.tuned = 100000;
  rig.Play(12000.0);
  rig.Press(0.75, 0.5);
  EXPECT_EQ(rig.tunings, 0);
  rig.tuned = 130000;
  rig.Play(12000.0);
  rig.Press(0.75, 0.5);
  EXPECT_EQ(rig.tunings, 1);
}

TEST(ScopePointer, AFrozenPictureTunesWhatItIsLabelledWith) {
  ScopeRig rig;
  rig.Play(12000.0);
  rig.Set("chkScopeFreeze", "1");
  rig.tuned = 100000000;
  rig.Play(12000.0);
  rig.Press(0.75, 0.5);
  EXPECT_NEAR(rig.tuned / 10.0, 7193000 + 0.75 * 1023 * kHertzPerBin, 1.0);
  rig.Set("chkScopeFreeze", "0");
  rig.tuned = 100000000;
  rig.Play(12000.0);
  rig.Press(0.75, 0.5);
  EXPECT_NEAR(rig.tuned / 10.0, 9988000 + 0.75 * 1023 * kHertzPerBin, 1.0);
}

TEST(ScopePointer, TheWheelTunesByTheHeightWhereItIsSwitchedSo) {
  ScopeRig rig;
  rig.Wheel("picScope", 1);
  EXPECT_EQ(rig.steps, 0);
  EXPECT_EQ(rig.mouse.ActiveCtl(), CtlIndex::None);
  rig.Choose("mnuScope", "Wheel tunes");
  struct Row {
    double Share;
    double Step;  // dHz
    const char* Text;
  };
  for (const Row& row : {Row{0.0, 100, "10"}, Row{0.04, 100, "10"}, Row{0.26, 3000, "300"},
                         Row{0.5, 5000, "500"}, Row{1.0, 10000, "1000"}}) {
    rig.Hover(0.5, row.Share);
    EXPECT_EQ(rig.step, row.Step) << row.Share;
    const std::string text = rig.Text("lblSpectrumFreq"), end = " : " + std::string(row.Text);
    EXPECT_EQ(text.substr(text.size() - end.size()), end);
  }
  EXPECT_EQ(rig.mouse.ActiveCtl(), CtlIndex::PicScope);
  hand::Turn(rig.scope.picScope, 3, {});
  EXPECT_EQ(rig.steps, 3);
  hand::Turn(rig.scope.picScope, -1, {});
  EXPECT_TRUE(rig.mouse.KeyDown({Key::Up, {}}));
  EXPECT_TRUE(rig.mouse.KeyDown({Key::Z, {}}));
  EXPECT_TRUE(rig.mouse.KeyDown({Key::Down, {}}));
  EXPECT_EQ(rig.steps, 1);
  EXPECT_EQ(rig.mouse(CtlIndex::PicScope).Value, 0.0F);
  // A value lit up elsewhere goes out when the pointer comes to the picture.
  rig.mouse.Point(CtlIndex::ScopeTop);
  rig.Hover(0.5, 0.5);
  EXPECT_EQ(rig.mouse.ActiveCtl(), CtlIndex::PicScope);
  rig.Choose("mnuScope", "Wheel tunes");
  EXPECT_EQ(rig.mouse.ActiveCtl(), CtlIndex::None);
}

TEST(ScopeGestures, ZoomAndPanKeepWhatIsUnderThePointer) {
  ScopeRig rig;
  rig.Play(12000.0);
  rig.Wheel("picScope", 3);
  EXPECT_EQ(rig.analyser.StopX, 1023);  // not without the option
  rig.Choose("mnuScope", "Gestures");
  const auto hertzAt = [&](double share) {
    rig.Play(12000.0);
    return rig.scope.Pointer.PlaceOf(rig.scope.picScope, {.X = share}).Hertz;
  };
  const double before = hertzAt(0.3);
  hand::Turn(rig.scope.picScope, 6, {.X = 0.3});
  EXPECT_NEAR(rig.analyser.StopX - rig.analyser.StartX, 1023 / std::pow(1.25, 6), 3.0);
  EXPECT_NEAR(hertzAt(0.3), before, 3 * kHertzPerBin);
  hand::Turn(rig.scope.picScope, 40, {.X = 0.3});
  EXPECT_EQ(rig.analyser.StopX - rig.analyser.StartX, 10);
  EXPECT_NEAR(hertzAt(0.3), before, 4 * kHertzPerBin);
  hand::Turn(rig.scope.picScope, -6, {.X = 0.3, .With = {.Ctrl = true}});
  const int width = rig.analyser.StopX - rig.analyser.StartX, start = rig.analyser.StartX;
  EXPECT_GT(width, 20);
  hand::Turn(rig.scope.picScope, -1, {.With = {.Shift = true}});
  EXPECT_GT(rig.analyser.StartX, start);
  EXPECT_EQ(rig.analyser.StopX - rig.analyser.StartX, width);
  rig.Drag(0.2, 0.5, 0.7, 0.5, MouseButton::Middle);
  EXPECT_NEAR(rig.analyser.StartX, start + width / 8.0 - width / 2.0, 2.0);
  hand::Turn(rig.scope.picScope, 99, {.With = {.Shift = true}});
  EXPECT_EQ(rig.analyser.StartX, 0);
  EXPECT_EQ(rig.analyser.StopX, width);
  hand::Turn(rig.scope.picScope, -40, {});
  EXPECT_EQ(rig.analyser.StartX, 0);
  EXPECT_EQ(rig.analyser.StopX, 1023);
  EXPECT_EQ(rig.tunings, 0);
}

TEST(ScopeGestures, TheOscilloscopeZoomsAndLeavesTheBandsWindow) {
  ScopeRig rig("[Scope]\nGestures=True\n");
  rig.Set("sldXCentre", "700");
  rig.Click("chkScopeMode(1)");
  rig.Play(1000.0);
  hand::Turn(rig.scope.picScope, 4, {.X = 0.2});
  EXPECT_NEAR(rig.analyser.DisplayWidth, 1023 / std::pow(1.25, 4), 3.0);
  rig.Drag(0.2, 0.5, 0.7, 0.5, MouseButton::Middle);
  hand::Turn(rig.scope.picScope, 4, {.With = {.Shift = true}});
  rig.Click("chkScopeMode(2)");
  hand::Turn(rig.scope.picScope, 4, {.X = 0.2});
  EXPECT_EQ(rig.Text("sldXCentre"), "700");
  EXPECT_EQ(rig.analyser.StartX, 0);
}

TEST(ScopeGestures, PullingTheLabelsTunesOnceATick) {
  ScopeRig rig;
  rig.Play(12000.0);
  const double foot = 0.99;
  rig.Drag(0.5, foot, 0.6, foot);
  EXPECT_EQ(rig.tunings, 1);  // a click like any other
  rig.tuned = 72050000;
  rig.tunings = 0;
  rig.Choose("mnuScope", "Gestures");
  rig.Play(12000.0);
  hand::Drag(rig.scope.picScope, {.X = 0.5, .Y = foot, .Button = MouseButton::Left},
             {.X = 0.6, .Y = foot, .Button = MouseButton::Left}, [] {});
  EXPECT_EQ(rig.tunings, 0);
  rig.scope.Periodic();
  EXPECT_EQ(rig.tunings, 1);
  EXPECT_NEAR(rig.tuned / 10.0, 7205000 - 0.1 * 1023 * kHertzPerBin, 1.0);
  rig.scope.Periodic();
  EXPECT_EQ(rig.tunings, 1);
}

TEST(ScopeGestures, ShiftAndCtrlSayWhatAClickMeans) {
  ScopeRig rig;
  rig.Choose("mnuScope", "Gestures");
  rig.step = 50000;  // 5 kHz
  rig.Play(12000.0);
  rig.Press(0.75, 0.5, {.Shift = true});
  EXPECT_EQ(rig.tuned, 72100000);
  rig.tuned = 72050000;
  rig.radio.SetDemodMode(DemodMode::LSB);
  rig.radio.SetFilterEdges(300, 2300);
  rig.Play(12000.0);
  const double clicked = 7193000 + 0.75 * 1023 * kHertzPerBin;
  rig.Press(0.75, 0.5, {.Ctrl = true});
  EXPECT_NEAR(rig.tuned / 10.0, clicked + 1300.0, 1.0);
}

TEST(ScopeGestures, AnEdgeUnderThePointerIsDraggedInsteadOfTuning) {
  ScopeRig rig;
  Label high(rig.registry, "lblFilterHi"), low(rig.registry, "lblFilterLo");
  const auto follow = [&](int index, auto set) {
    return [&rig, index, set] { (rig.radio.*set)(WholeValue(rig.mouse, index)); };
  };
  rig.mouse.Bind(CtlIndex::FilterHi, high, follow(CtlIndex::FilterHi, &Receiver::SetFilterHigh));
  rig.mouse.Bind(CtlIndex::FilterLo, low, follow(CtlIndex::FilterLo, &Receiver::SetFilterLow));
  rig.radio.SetDemodMode(DemodMode::LSB);
  rig.radio.SetFilterEdges(300, 3000);
  rig.Play(12000.0);
  const auto shareOf = [](double hertz) { return (hertz - 7193000.0) / (1023 * kHertzPerBin); };
  rig.Drag(shareOf(7202000.0), 0.5, shareOf(7203000.0), 0.5);
  EXPECT_EQ(rig.tunings, 1);  // not without the option
  rig.tuned = 72050000;
  rig.Choose("mnuScope", "Drag its edges");
  rig.Play(12000.0);
  // In LSB the high edge is on the left: 3 kHz under zero beat. 4 pixels are 96 Hz.
  rig.Drag(shareOf(7202000.0 + 60.0), 0.5, shareOf(7202600.0 + 60.0), 0.5);
  EXPECT_NEAR(rig.radio.Vars.FilterHi, 2400, 1);
  EXPECT_EQ(rig.Text("lblFilterHi"), std::to_string(rig.radio.Vars.FilterHi));
  rig.mouse.SetValue(CtlIndex::FilterLo, 300);
  rig.Play(12000.0);
  rig.Drag(shareOf(7204700.0), 0.5, shareOf(7209000.0), 0.5);
  EXPECT_EQ(rig.radio.Vars.FilterLo, 0);  // no further than its entry goes
  EXPECT_EQ(rig.tunings, 1);
  rig.Press(shareOf(7202600.0 + 150.0), 0.5);
  EXPECT_EQ(rig.tunings, 2);
}

TEST(ScopeCursor, FollowsThePointerAndTheKeysTuneToIt) {
  ScopeRig rig("[Scope]\nCursor=True\n");
  rig.Set("chkSmoothSpectrum", "0");
  rig.Play(12000.0 - 3000.0, 0.5);  // with the oscillator above, 3 kHz over the tuned frequency
  rig.Hover((12000.0 + 3000.0) / kHertzPerBin / 1023.0, 0.5);
  EXPECT_EQ(rig.Text("lblScopeCursor"), "7 208 000 Hz  -6.0 dB");
  rig.mouse.EnterControl(CtlIndex::ScopeCursor);  // by the keyboard: the pointer rests where it is
  const auto press = [&](int code, Modifiers with = {}) { EXPECT_TRUE(rig.mouse.KeyDown({code, with})); };
  press(Key::Up);
  EXPECT_EQ(rig.Text("lblScopeCursor").substr(0, 12), "7 208 234 Hz");
  for (int i = 0; i < 10; ++i) rig.scope.Periodic();
  EXPECT_EQ(rig.Text("lblScopeCursor").substr(0, 12), "7 208 234 Hz");
  press(Key::Down, {.Shift = true});
  press(Key::Up, {.Shift = true});
  press(Key::Down);
  press(Key::Up, {.Ctrl = true});
  press(Key::Down, {.Ctrl = true});
  press(Key::Enter);
  EXPECT_EQ(rig.tuned, 72080000);
  rig.Play(12000.0, 0.5);
  rig.mouse.Point(CtlIndex::ScopeCursor);
  press(Key::Up, {.Ctrl = true});
  press(Key::Down, {.Ctrl = true});
  EXPECT_EQ(rig.Text("lblScopeCursor"), "7 208 000 Hz  -6.0 dB");  // it has gone along with the station
}

TEST(ScopeCursor, ReadsTimeAndValueOfTheOscilloscope) {
  ScopeRig rig(
      "[Scope]\nCursor=True\n[SpectrumAnalyser]\n.Mode.1.FastMode=True\n.Mode.1.Chn1.TriggerOn=False\n");
  rig.Click("chkScopeMode(1)");
  rig.Set("sldXWidth", "401");
  rig.Play(1000.0, 0.5);  // 48 samples a turn
  rig.Hover(12.0 / 400.0, 0.5);
  EXPECT_EQ(rig.Text("lblScopeCursor"), "0.25 ms  16384");
  rig.mouse.Point(CtlIndex::ScopeCursor);
  EXPECT_TRUE(rig.mouse.KeyDown({Key::Up, {}}));
  EXPECT_TRUE(rig.mouse.KeyDown({Key::Up, {}}));
  EXPECT_TRUE(rig.mouse.KeyDown({Key::Up, {.Ctrl = true}}));
  EXPECT_TRUE(rig.mouse.KeyDown({Key::Up, {.Ctrl = true}}));
  EXPECT_TRUE(rig.mouse.KeyDown({Key::Up, {.Ctrl = true}}));
  EXPECT_TRUE(rig.mouse.KeyDown({Key::Up, {.Ctrl = true}}));
  EXPECT_EQ(rig.Text("lblScopeCursor"), "0.75 ms  -16384");
  rig.mouse.KeyDown({Key::Enter, {}});
  EXPECT_EQ(rig.tunings, 0);
  rig.Click("chkScopeMode(2)");
  EXPECT_FALSE(rig.Seen("lblScopeCursor"));
}

TEST(ScopeMarks, NamesNeverOverlapAndAClickOnOneTunesExactly) {
  ScopeRig rig("[Scope]\nNames=True\nBandShading=True\nLevelView=True\n");
  rig.scope.Marks.Source = [](double low, double high, ScopeMarks& marks) {
    EXPECT_NEAR(high - low, 1023 * kHertzPerBin, 1.0);
    for (int i = 0; i < 40; ++i)
      marks.Marks.push_back({7216000.3 - 600.0 * i, "Station " + std::to_string(i)});
    marks.Spans.push_back({7000000, 7200000, "Amateurs"});
    marks.Spans.push_back({7200000, 7450000, "41 m"});
    marks.Spans.push_back({7200000, 7200400, "too narrow for its name"});
  };
  rig.Play(12000.0);
  rig.scope.Periodic();
  rig.Play(12000.0);
  const std::vector<TraceCanvas::Written> texts = rig.Latest().Texts;
  EXPECT_GT(texts.size(), 20U);
  const TraceCanvas::Written* name = nullptr;
  int spans = 0;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    EXPECT_GE(texts[i].Left, 0.0);
    EXPECT_LE(texts[i].Left + texts[i].Width, ScopeRig::kWidth) << texts[i].Text;
    if (texts[i].Text.starts_with("Station")) name = &texts[i];
    spans += texts[i].Text == "Amateurs" || texts[i].Text == "41 m";
    for (std::size_t k = i + 1; k < texts.size(); ++k) {
      EXPECT_FALSE(texts[i].Meets(texts[k])) << texts[i].Text << " and " << texts[k].Text;
    }
  }
  EXPECT_EQ(spans, 2);
  ASSERT_NE(name, nullptr);
  const int station = std::stoi(name->Text.substr(8));
  rig.Press((name->Left + name->Width / 2) / ScopeRig::kWidth,
            (name->Top + name->Height / 2) / ScopeRig::kHeight);
  EXPECT_EQ(rig.tuned, 72160003 - 6000 * station);
}

TEST(ScopeMarks, ANameAtTheRightEdgeStandsLeftOfItsTick) {
  ScopeRig rig("[Scope]\nNames=True\n");
  rig.scope.Marks.Source = [](double, double high, ScopeMarks& marks) {
    marks.Marks.push_back({high - 5 * kHertzPerBin, "At the edge"});
  };
  rig.Play(12000.0);
  rig.scope.Periodic();
  rig.Play(12000.0);
  const std::vector<TraceCanvas::Written> texts = rig.Latest().Texts;
  const auto name = std::find_if(texts.begin(), texts.end(),
                                 [](const TraceCanvas::Written& text) { return text.Text == "At the edge"; });
  ASSERT_NE(name, texts.end());
  EXPECT_LT(name->Left + name->Width, ScopeRig::kWidth);
  EXPECT_GT(name->Left + name->Width, ScopeRig::kWidth - 10);
}

TEST(ScopeLevels, TheEndsKeepTheirDistanceAndFitToWhatIsThere) {
  ScopeRig rig("[Scope]\nLevelView=True\n");
  rig.Set("lblScopeFloor", "-20");
  EXPECT_EQ(rig.Text("lblScopeTop"), "0");
  rig.Set("lblScopeTop", "-60");
  EXPECT_EQ(rig.Text("lblScopeFloor"), "-70");
  rig.Set("lblScopeFloor", "-30");
  EXPECT_EQ(rig.Text("lblScopeTop"), "-20");
  EXPECT_EQ(rig.analyser.LevelTop, -20.0);
  for (int i = 0; i < 60; ++i) rig.Play(12000.0, 0.1);
  hand::Click(rig.At("lblScopeTop"), {.Button = MouseButton::Right});
  EXPECT_EQ(rig.Text("lblScopeTop"), "-14");  // 20 dB down, and six of room
  EXPECT_EQ(rig.analyser.LevelFloor, std::stod(rig.Text("lblScopeFloor")));
  EXPECT_LT(rig.analyser.LevelFloor, -60.0);
}

}  // namespace
}  // namespace quorl::test
