// The windows of the configuration and of the first start.
#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QShortcut>
#include <map>
#include <set>

#include "WindowRig.h"
#include "desktop/views/FaultLine.h"
#include "desktop/views/LevelBarView.h"
#include "desktop/window/ConfigWindow.h"
#include "desktop/window/FirstStartWindow.h"

namespace quorl {
namespace {

class ConfigWindowTest : public WindowRig {
 protected:
  template <class W>
  std::unique_ptr<W> Open() {
    return std::make_unique<W>(panel.Registry(), [](const std::string& line) { ADD_FAILURE() << line; });
  }
  // Names of the views that Tab comes to, from the one that has the keyboard round to it again.
  static std::vector<std::string> TabStops(QWidget& form) {
    std::vector<std::string> stops;
    std::set<const QWidget*> met;
    form.setFocus();
    for (;;) {
      QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : &form, Qt::Key_Tab);
      const QWidget* at = QApplication::focusWidget();
      if (!at || !met.insert(at).second) return stops;
      const bool inner = dynamic_cast<const View*>(at) == nullptr;
      stops.push_back((inner ? at->parentWidget() : at)->objectName().toStdString());
    }
  }
  static int Place(const std::vector<std::string>& stops, const std::string& name) {
    const auto found = std::find(stops.begin(), stops.end(), name);
    return found == stops.end() ? -1 : static_cast<int>(found - stops.begin());
  }
};

TEST_F(ConfigWindowTest, EachPageIsReachedByTheKeyboardInTheOrderOfReading) {
  auto config = Open<ConfigWindow>();
  panel.Click("cmdConfig");
  ASSERT_TRUE(config->isVisible());
  EXPECT_FALSE(config->isModal());
  QApplication::setActiveWindow(config.get());
  const std::vector<std::vector<const char*>> pages{
      {"cboSDRModel", "cmdFirstStart", "txtIFFrequency", "chkLoLO", "txtDDSClkin", "cmdCalDDS",
       "chkAutoDDSRefresh", "chkAutoStartSDR"},
      {"optIF(1)", "cboComPort", "txtBitPeriod", "cmdBitPeriodDefault"},
      {"cboCapDevices", "cboPlayDevices", "cmdTestTone"},
      {"chkEnableEncoder", "chkShaftAutoRate", "chkKBDSupport", "chkScrollWheelEnableOverScope",
       "chkAutoTrackPresets"},
      {"txtSpectrumDisplaySmoothingCount", "chkSpectrumDisplayHideToolTip", "chkScollLabelHiliteBorder",
       "FormCaptionOffOnPwrOn"},
      {"txtPathToDream", "cmdFindDREAM", "txtDreamProgArgs", "chkDreamRunOnDRM", "chkCloseSoundCardOnDRM",
       "chkMuteAFOnDRM", "cboDRMPlayDevices", "chkDreamCloseOnExit", "chkDreamCloseOnModeChange",
       "cmdDreamDefault"},
      {},
      {},
      {"chkRemoteOn", "txtRemoteAddress", "txtRemotePort", "chkRemoteOthers"}};
  const QSize size = config->size();
  for (int page = 0; page < static_cast<int>(pages.size()); ++page) {
    panel.Press("frmConfig.TabStrip1", page);
    config->Clock().Flush();
    Settle();
    EXPECT_EQ(config->size(), size) << "the window keeps its size";
    const std::vector<std::string> stops = TabStops(*config);
    EXPECT_GE(Place(stops, IndexedName("frmConfig.TabStrip1", page)), 0);
    int last = -1;
    for (const char* field : pages[static_cast<std::size_t>(page)]) {
      const int place = Place(stops, std::string("frmConfig.") + field);
      EXPECT_GT(place, last) << field;
      last = place;
    }
    for (const char* button : {"frmConfig.cmdOK", "frmConfig.cmdApply", "frmConfig.cmdCancel"})
      EXPECT_GE(Place(stops, button), 0) << button;
  }
}

TEST_F(ConfigWindowTest, EveryControlIsSpokenByANameAndNoTwoShareAKey) {
  std::unique_ptr<QWidget> windows[] = {Open<ConfigWindow>(), Open<FirstStartWindow>()};
  panel.Click("cmdConfig");
  panel.Click("frmConfig.cmdFirstStart");
  Settle();
  for (const auto& window_ : windows) {
    std::map<QString, std::string> keys;
    for (QWidget* widget : window_->findChildren<QWidget*>()) {
      auto* view = dynamic_cast<View*>(widget);
      if (!view) continue;
      view->TakeOver();
      const std::string& name = view->Shown().Name();
      EXPECT_NE(view->SpokenName().toStdString(), name) << "nothing but its name in the code";
      for (const QShortcut* shortcut :
           view->findChildren<QShortcut*>(QString(), Qt::FindDirectChildrenOnly)) {
        const auto [first, isNew] = keys.emplace(shortcut->key().toString(), name);
        EXPECT_TRUE(isNew) << name << " and " << first->second << " share a key";
      }
    }
    EXPECT_GE(keys.size(), 4U);
  }
}

TEST_F(ConfigWindowTest, AFaultStandsUnderItsFieldAndIsReadToWhoCannotSeeIt) {
  auto config = Open<ConfigWindow>();
  panel.Click("cmdConfig");
  panel.Press("frmConfig.TabStrip1", 4);
  const auto shown = [&config] {
    std::vector<std::string> lines;
    for (const QLabel* label : config->findChildren<QLabel*>()) {
      const auto* line = dynamic_cast<const FaultLine*>(label);
      if (line && line->isVisible()) lines.push_back(line->text().toStdString());
    }
    return lines;
  };
  config->Clock().Flush();
  Settle();
  EXPECT_TRUE(shown().empty());
  panel.Set("frmConfig.txtSpectrumDisplaySmoothingCount", "99");
  panel.Click("frmConfig.cmdApply");
  const std::string fault = panel.At("frmConfig.txtSpectrumDisplaySmoothingCount").Fault();
  ASSERT_NE(fault, "");
  EXPECT_EQ(shown(), std::vector<std::string>{fault});
  config->Clock().Flush();
  auto* field = config->findChild<QWidget*>("frmConfig.txtSpectrumDisplaySmoothingCount");
  EXPECT_EQ(QAccessible::queryAccessibleInterface(field)->text(QAccessible::Description).toStdString(),
            fault);
  panel.Set("frmConfig.txtSpectrumDisplaySmoothingCount", "9");
  EXPECT_TRUE(shown().empty());
}

TEST_F(ConfigWindowTest, TheLevelIsReadAloudAndIsAllThatIsPaintedForIt) {
  auto config = Open<ConfigWindow>();
  panel.Click("cmdConfig");
  panel.Press("frmConfig.TabStrip1", 2);
  config->Clock().Flush();
  auto& bar = panel.Get<LevelBar>("frmConfig.picLevel(0)");
  bar.Level = 0.5;
  bar.AccessibleText = "-30 dB  low";
  config->Clock().Flush();
  auto* view = config->findChild<LevelBarView*>("frmConfig.picLevel(0)");
  ASSERT_NE(view, nullptr);
  QAccessibleInterface& access = *QAccessible::queryAccessibleInterface(view);
  EXPECT_EQ(access.role(), QAccessible::ProgressBar);
  EXPECT_EQ(access.text(QAccessible::Name), "Level of the left channel");
  EXPECT_EQ(access.text(QAccessible::Value), "-30 dB  low");
  EXPECT_EQ(access.valueInterface()->currentValue().toInt(), 50);
  Settle();
  PaintCounter counter(*config);
  bar.Level = 0.6;
  config->Clock().Flush();
  Settle();
  EXPECT_GT(counter.Paints, 0);
  EXPECT_LE(counter.Paints, 6) << "the bar, and the ground under it";
}

TEST_F(ConfigWindowTest, TheFirstStartIsWorkedByKeys) {
  auto config = Open<ConfigWindow>();
  auto first = Open<FirstStartWindow>();
  panel.Click("cmdConfig");
  panel.Click("frmConfig.cmdFirstStart");
  ASSERT_TRUE(first->isVisible());
  QApplication::setActiveWindow(first.get());
  Settle();
  const std::vector<std::string> stops = TabStops(*first);
  int last = -1;
  for (const char* field : {"optBoard(0)", "optIF(1)", "cboComPort", "cboCapDevices", "cboPlayDevices",
                            "cmdTestTone", "cmdRefresh", "cmdSkip", "cmdStart"}) {
    if (std::string(field) == "cboComPort") continue;  // there is no port on this machine
    const int place = Place(stops, std::string("frmFirstStart.") + field);
    EXPECT_GT(place, last) << field;
    last = place;
  }
  auto* board = first->findChild<QWidget*>("frmFirstStart.optBoard(0)");
  board->setFocus(Qt::TabFocusReason);
  QTest::keyClick(board, Qt::Key_Right);
  EXPECT_EQ(panel.Text("frmFirstStart.optBoard(1)"), "1");
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
  EXPECT_FALSE(first->isVisible());
  EXPECT_TRUE(config->isVisible());
}

}  // namespace
}  // namespace quorl
