// The recorder in the window: what stands where, in every size and state, and what the keyboard finds.
#include <QLineEdit>
#include <QListWidget>

#include "WindowRig.h"
#include "desktop/window/RecordErrorWindow.h"
#include "recorder/clsWavFile.h"

namespace quorl {
namespace {

class RecorderCardTest : public WindowRig {
 protected:
  RecorderCardTest() {
    panel.Frame().Scrollables().GiveFocus = [this](Control& control) { window.GiveFocus(control.Name()); };
    window.resize(1024, 700);
    window.show();
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window)) throw std::runtime_error("the window gets no keys");
    Show();
  }
  void Show() {
    window.Clock().Flush();
    Settle();
  }
  QWidget& View(const std::string& name) {
    auto* widget = window.findChild<QWidget*>(QString::fromStdString(name));
    if (!widget) throw std::logic_error(name);
    return *widget;
  }
  QRect Place(const std::string& name) {
    QWidget& view = View(name);
    return {view.mapTo(&window, QPoint(0, 0)), view.size()};
  }
  void Button(int index) {
    panel.Press("cmdWavCtls", index);
    panel.Run(0.1);
    Show();
  }
  void LoadRecording() {
    panel.Click("optPwr(0)");
    Button(0);
    panel.Run(4.0);
    Button(3);
    panel.Boxes.SaveFileAnswers.push_back("plans/night.wav");
    Button(8);
    panel.Boxes.OpenFileAnswers.push_back("plans/night.wav");
    Button(7);
  }
  // Nothing in that card is cut off, and the card itself is within the window.
  void ExpectWhole(const char* card) {
    const QWidget& ground = View(card);
    EXPECT_TRUE(window.rect().contains(Place(card))) << card;
    for (const QWidget* inner : ground.findChildren<QWidget*>()) {
      const auto* view = dynamic_cast<const quorl::View*>(inner);
      if (!view || !view->isVisible()) continue;
      const QRect place(view->mapTo(&ground, QPoint(0, 0)), view->size());
      EXPECT_TRUE(ground.rect().contains(place)) << view->Shown().Name();
      const bool bends = view->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored;
      EXPECT_TRUE(bends || view->width() >= view->minimumSizeHint().width()) << view->Shown().Name();
    }
  }
};

TEST_F(RecorderCardTest, EverySizeButTheCompactOneHoldsAllOfIt) {
  for (const bool loaded : {false, true}) {
    if (loaded) LoadRecording();
    for (const int size : {0, 1, 3}) {
      SCOPED_TRACE(testing::Message() << size << loaded);
      panel.Press("optDisplaySize", size);
      Show();
      Settle();
      EXPECT_EQ(window.size(), QSize(1024, 700));
      EXPECT_LE(window.layout()->minimumSize().height(), 700);
      EXPECT_LE(window.layout()->minimumSize().width(), 1024);
      ExpectWhole("frRecorder");
      ExpectWhole(loaded ? "picRecorderTrackList" : "frPresets");
      EXPECT_NE(View("frPresets").isVisible(), loaded);
    }
    panel.Press("optDisplaySize", 2);
    Show();
    EXPECT_FALSE(View("frRecorder").isVisible());
    EXPECT_FALSE(View("picRecorderTrackList").isVisible() || View("frPresets").isVisible());
  }
  EXPECT_EQ(dynamic_cast<ListView&>(View("lstRecordingLogs")).Lines().count(), 1);
}

TEST_F(RecorderCardTest, WhatIsHiddenKeepsItsPlace) {
  std::vector<QRect> places;
  const std::vector<std::string> names{"cmdWavCtls(0)", "cmdWavCtls(3)",   "cmdWavCtls(7)",
                                       "cmdWavCtls(9)", "sldRecorderSeek", "txtRecordFileName"};
  for (const std::string& name : names) places.push_back(Place(name));
  const QRect card = Place("frRecorder");
  Button(0);
  EXPECT_FALSE(View("cmdWavCtls(7)").isVisible());
  Button(2);
  panel.At("shpLooping").Visible = true;
  Show();
  for (std::size_t i = 0; i < names.size(); ++i) EXPECT_EQ(Place(names[i]), places[i]) << names[i];
  EXPECT_EQ(Place("frRecorder"), card);
  EXPECT_EQ(Access("cmdWavCtls(2)").text(QAccessible::Value), "on");
  EXPECT_TRUE(Access("cmdWavCtls(0)").state().pressed);
  EXPECT_FALSE(Access("cmdWavCtls(3)").state().pressed);
}

TEST_F(RecorderCardTest, AKeyThatPressesAButtonLeavesTheNextOnesToTuning) {
  window.PressKey({Key::Right, {}}, true);  // the keyboard is in use
  ASSERT_TRUE(window.FocusByKeyboard("cmdWavCtls(0)"));
  window.PressKey({Key::Space, {}}, true);
  EXPECT_EQ(panel.Text("cmdWavCtls(0)"), "1");
  EXPECT_EQ(window.focusWidget(), &View("picWavCtlsOffFocus"));
  window.PressKey({Key::Space, {}}, true);
  EXPECT_EQ(panel.Text("cmdWavCtls(2)"), "0");
  QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
  EXPECT_EQ(window.focusWidget()->objectName().toStdString(), "cmdWavCtls(0)");
  ASSERT_TRUE(window.FocusByKeyboard("cmdWavCtls(2)"));
  window.PressKey({Key::Enter, {}}, true);
  EXPECT_EQ(panel.Text("cmdWavCtls(2)"), "1");
  window.PressKey({Key::Up, {}}, true);
  panel.Run(0.2);
  window.PressKey({Key::Up, {}}, false);
  EXPECT_NE(panel.Digits(), "072050000");
}

TEST_F(RecorderCardTest, ANameCountsWhenTheLineIsLeft) {
  auto& line = dynamic_cast<TextView&>(View("txtRecordFileName")).Line();
  line.setFocus();
  line.selectAll();
  QTest::keyClicks(&line, "/night");
  EXPECT_TRUE(panel.Frame().WavFile().RecordFileName.empty());
  View("sldBW(0)").setFocus();
  EXPECT_EQ(panel.Frame().WavFile().RecordFileName, "/night.wav");
  Show();
  EXPECT_EQ(line.text(), "night.wav");
}

TEST_F(RecorderCardTest, AFaultIsToldBesideThePanel) {
  RecordErrorWindow error(panel.Registry(), [](const std::string& line) { ADD_FAILURE() << line; });
  EXPECT_FALSE(error.isVisible());
  panel.Storage.Fail(FileOperation::Open, {13, "no"});
  Button(0);
  EXPECT_TRUE(error.isVisible());
  EXPECT_EQ(error.windowModality(), Qt::NonModal);
  EXPECT_EQ(error.windowTitle(), "Recording File Error");
  const auto* message = error.findChild<QWidget*>("txtMessage");
  EXPECT_GE(message->height(), message->sizeHint().height());
  QTest::keyClick(&error, Qt::Key_Escape);
  EXPECT_FALSE(error.isVisible());
  Button(0);
  error.close();
  EXPECT_FALSE(error.isVisible() || panel.At("frmRecordFileError").Visible());
}

}  // namespace
}  // namespace quorl
