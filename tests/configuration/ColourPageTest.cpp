#include "configuration/ColourPage.h"

#include <gtest/gtest.h>

#include "config/ThemeFile.h"
#include "platform/virtual/VirtualDialogs.h"
#include "platform/virtual/VirtualFiles.h"

namespace quorl {
namespace {

constexpr char kFolder[] = "/radio/themes";
constexpr Colour kPink = 0xB469FF;

class ColourPageTest : public testing::Test {
 protected:
  ColourPageTest() {
    ThemeColours sepia;
    for (std::size_t i = 0; i < kThemeKeyCount; ++i)
      sepia[static_cast<Swatch>(i)] = static_cast<Colour>(0x1000 + i);
    EXPECT_FALSE(files.MakeDirectory("/radio") || files.MakeDirectory(kFolder));
    EXPECT_FALSE(SaveTheme(files, Path("Sepia.thm"), sepia));
    files.Put(Path("Torn.thm"),
              "[Active]\r\nName=A\r\n[A]\r\nshpSDRLabelColour=7\r\nshpSDRTuningColour=x\r\n");
    files.Put(Path("none.THM"), "[SDRColours]\r\n");
    colours.AddRepaint([this] { ++repaints; });
    page.Load();
  }
  static std::string Path(const std::string& name) { return std::string(kFolder) + "/" + name; }
  Picture& Sample(const char* key) {
    return dynamic_cast<Picture&>(*registry.Find(std::string("frmConfig.") + key));
  }
  void Press(const char* name) { registry.Find(std::string("frmConfig.") + name)->UserClick(); }
  void ChooseLabel(Colour colour) {
    boxes.ColourAnswers.push_back(colour);
    Press("cmdSDrLabelColour");
  }

  ControlRegistry registry;
  Frame form{registry, "frmConfig"}, frame{registry, "frmConfig.frConfigs(6)"};
  Label words{registry, "lblWords"};
  KernelSettings kernel;
  PublicVars vars;
  clsSpectrumAnalyser scope{kernel, vars, [] {}};
  ColourSchemes scheme;
  ScrollableControls mouse{scheme};
  PanelColours colours{registry, scheme, mouse};
  VirtualDialogs boxes;
  VirtualFiles files;
  SettingsStore store;
  int repaints = 0;
  ColourPage page{registry, {scheme, scope, colours, boxes, files, store, kFolder}};
};

TEST_F(ColourPageTest, ASwatchActsAtApplyAndNotBefore) {
  const ColourSchemes before;
  ChooseLabel(kPink);
  boxes.ColourAnswers.push_back(0x123456U);
  Press("cmdScopeY1Colour");
  EXPECT_EQ(boxes.ColourRequests, (std::vector<std::uint32_t>{before.SDRLabelColour, 0xFF00U}));
  EXPECT_EQ(Sample("shpSDRLabelColour").BackColour(), kPink);
  EXPECT_EQ(Sample("shpSDRLabelColour").Text(), "#FF69B4");
  EXPECT_EQ(scheme.SDRLabelColour, before.SDRLabelColour);
  EXPECT_EQ(scope.Y1BaseColour(), 0xFF00U);
  EXPECT_EQ(repaints, 0);
  scope.SetChannelBrightness(0, 50);
  page.Apply();
  colours.ReColour();
  EXPECT_EQ(scheme.SDRLabelColour, kPink);
  EXPECT_EQ(words.ForeColour(), kPink);
  EXPECT_EQ(scope.Y1BaseColour(), 0x123456U);
  EXPECT_EQ(scope.Y1Colour, 0x091A2BU) << "at the brightness that is set";
  EXPECT_EQ(Sample("shpSDRLabelColour").BackColour(), kPink) << "no part of the panel that is painted";
  boxes.ColourAnswers.push_back(std::nullopt);
  Press("cmdSDrLabelColour");
  EXPECT_EQ(Sample("shpSDRLabelColour").BackColour(), kPink) << "cancelled";
}

TEST_F(ColourPageTest, ThePreviewLastsAsLongAsItIsHeld) {
  const Colour before = scheme.SDRLabelColour;
  CommandButton& button = page.cmdSDRPreviewColours;
  ChooseLabel(kPink);
  const std::vector<std::pair<std::function<void()>, std::function<void()>>> kHolds{
      {[&] { button.MouseDown({.Button = MouseButton::Left}); },
       [&] { button.MouseUp({.Button = MouseButton::Left}); }},
      {[&] {
         button.KeyDown(Key{Key::Space, {}});
       },
       [&] {
         button.KeyUp(Key{Key::Space, {}});
       }},
      {[&] {
         button.KeyDown(Key{Key::Space, {}});
       },
       [&] { button.LostFocus(); }},
      {[&] { button.MouseDown({.Button = MouseButton::Left}); }, [&] { form.Visible = false; }},
      {[&] {
         button.KeyDown(Key{Key::Space, {}});
       },
       [&] { frame.Visible = false; }},
  };
  for (const auto& [hold, release] : kHolds) {
    form.Visible = frame.Visible = true;
    hold();
    hold();  // as a key repeats
    EXPECT_EQ(scheme.SDRLabelColour, kPink);
    EXPECT_EQ(words.ForeColour(), kPink);
    page.WithColoursInForce([&] { EXPECT_EQ(scheme.SDRLabelColour, before) << "what is stored meanwhile"; });
    EXPECT_EQ(scheme.SDRLabelColour, kPink);
    release();
    EXPECT_EQ(scheme.SDRLabelColour, before);
    EXPECT_EQ(words.ForeColour(), before);
    EXPECT_EQ(Sample("shpSDRLabelColour").BackColour(), kPink) << "what was chosen stays chosen";
  }
  int escapes = 0;
  form.KeyDown = [&escapes](const Key& key) { escapes += key.Code == Key::Escape; };
  button.KeyDown(Key{Key::Escape, {}});
  EXPECT_EQ(escapes, 1) << "other keys are the window's";
  button.MouseDown({.Button = MouseButton::Right});
  EXPECT_EQ(scheme.SDRLabelColour, before);
}

TEST_F(ColourPageTest, AThemeOfTheListIsSeenAtOnceAndKeptAtApply) {
  EXPECT_EQ(page.cboTheme.Items(), (std::vector<std::string>{"Sepia", "Torn"}));
  EXPECT_EQ(page.cboTheme.ListIndex(), -1);
  const ColourSchemes before;
  page.cboTheme.UserSet("Sepia");
  EXPECT_EQ(words.ForeColour(), 0x1003U);
  EXPECT_EQ(scope.ScopeBackColour, 0x1007U);
  EXPECT_EQ(scope.ControlColourFocused, 0x1006U) << "as a number that is turned";
  form.Visible = false;
  EXPECT_EQ(words.ForeColour(), before.SDRLabelColour) << "closed without Apply";
  form.Visible = true;
  page.Load();
  page.cboTheme.UserSet("Sepia");
  page.Apply();
  form.Visible = false;
  EXPECT_EQ(scheme.SDRBackgroundColour, 0x1000U);
  page.Load();
  EXPECT_EQ(page.cboTheme.Text(), "Sepia");
  ChooseLabel(kPink);
  EXPECT_EQ(page.cboTheme.ListIndex(), -1) << "no longer that theme";
  EXPECT_TRUE(boxes.Messages.empty());
}

TEST_F(ColourPageTest, FilesAreLoadedAndSavedFromTheThemeFolder) {
  boxes.OpenFileAnswers.push_back(Path("Torn.thm"));
  Press("cmdSDRColoursLoad");
  ASSERT_EQ(boxes.OpenFileRequests.size(), 1U);
  EXPECT_EQ(boxes.OpenFileRequests[0].Title, "Load SDr Colour Theme Filename");
  EXPECT_EQ(boxes.OpenFileRequests[0].Filter, "SDR Colour Themes (*.thm)|*.thm");
  EXPECT_EQ(boxes.OpenFileRequests[0].Directory, kFolder);
  ASSERT_EQ(boxes.Messages.size(), 1U) << "one box for all that is wrong";
  EXPECT_NE(boxes.Messages[0].Text.find("shpSDRTuningColour"), std::string::npos);
  EXPECT_EQ(Sample("shpSDRLabelColour").BackColour(), 7U);
  EXPECT_EQ(scheme.SDRLabelColour, ColourSchemes().SDRLabelColour) << "not before Apply";
  for (const char* name : {"none.THM", "gone.thm"}) {
    boxes.OpenFileAnswers.push_back(Path(name));
    Press("cmdSDRColoursLoad");
    EXPECT_NE(boxes.Messages.back().Text.find(Path(name)), std::string::npos);
    EXPECT_EQ(Sample("shpSDRLabelColour").BackColour(), 7U);
  }
  EXPECT_EQ(boxes.Messages.size(), 3U);

  boxes.SaveFileAnswers.push_back(Path("Mine"));
  Press("cmdSDRColoursSave");
  EXPECT_EQ(boxes.SaveFileRequests[0].Title, "Save SDr Colour Theme Filename");
  EXPECT_TRUE(files.Exists(Path("Mine.thm")));
  EXPECT_EQ(page.cboTheme.Text(), "Mine");
  ChooseLabel(kPink);
  for (const MessageAnswer answer : {MessageAnswer::No, MessageAnswer::Yes}) {
    boxes.SaveFileAnswers.push_back(Path("Mine.thm"));
    boxes.MessageAnswers.push_back(answer);
    Press("cmdSDRColoursSave");
    Failure failure;
    const ThemeContent saved = ReadTheme(files.Read(Path("Mine.thm"), failure).value(), {});
    EXPECT_EQ(saved.Colours[Swatch::Label], answer == MessageAnswer::Yes ? kPink : 7U);
  }
  files.Fail(FileOperation::Replace, {28, "Disk full"});
  const std::size_t told = boxes.Messages.size();
  boxes.SaveFileAnswers.push_back(Path("Other.thm"));
  Press("cmdSDRColoursSave");
  ASSERT_EQ(boxes.Messages.size(), told + 1);
  EXPECT_NE(boxes.Messages.back().Text.find("ProfileSaveItem: 28 "), std::string::npos);
}

TEST_F(ColourPageTest, DefaultsAndTheUsersOwnColours) {
  boxes.OpenFileAnswers.push_back(Path("Sepia.thm"));
  Press("cmdSDRColoursLoad");
  Press("cmdSDRControlDefaults");
  EXPECT_EQ(Sample("shpFocusScrollLabelColour").BackColour(), 255U);
  EXPECT_EQ(Sample("shpScopeBackColour").BackColour(), 0x1007U);
  Press("cmdScopeDefaults");
  page.Apply();
  EXPECT_EQ(scope.XTextColour, 0xFFFF00U);
  EXPECT_EQ(scope.Y2BaseColour(), 0xFFFFU);
  EXPECT_EQ(scheme.SDRFrameNormalColour, ColourSchemes().SDRFrameNormalColour);
  int mixed = 0;
  boxes.MixColours = [&mixed](CustomColours& own) {
    if (mixed++ == 0) own[15] = 0x336699;
    EXPECT_EQ(own[15], 0x336699U) << "kept for the next time";
  };
  Press("cmdSDrTuningColour");  // mixed and cancelled
  EXPECT_EQ(store.GetSetting("ComDlg", "CustomColour(15)", ""), "3368601");
  Press("cmdScopeBackColour");
  EXPECT_EQ(mixed, 2);
}

}  // namespace
}  // namespace quorl
