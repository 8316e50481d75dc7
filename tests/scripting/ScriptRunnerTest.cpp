// Scripts over a small panel: each command, and what a script that is wrong is told.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "controls/Controls.h"
#include "controls/Hand.h"
#include "controls/Timer.h"
#include "platform/virtual/VirtualDialogs.h"
#include "platform/virtual/VirtualEventQueue.h"
#include "scripting/ScriptDialogs.h"
#include "scripting/ScriptRunner.h"

namespace quorl::test {
namespace {

class ScriptRunnerTest : public testing::Test {
 protected:
  ScriptRunnerTest() {
    box.Click = [this] { Note(box.Value() ? "on" : "off"); };
    group.Click = [this](int index) { Note("press" + std::to_string(index)); };
    slider.Scroll = [this] { Note("scroll" + slider.Text()); };
    menu.Click = [this](int index) { Note("menu" + std::to_string(index)); };
    label.MouseMove = [this](const MouseEvent& at) { Note("move", at); };
    label.MouseDown = [this](const MouseEvent& at) { Note("down", at); };
    label.MouseUp = [this](const MouseEvent& at) { Note("up", at); };
    label.Click = [this](const MouseEvent& at) { Note("click", at); };
    label.DblClick = [this](const MouseEvent& at) { Note("double", at); };
    label.Wheel = [this](int notches, const MouseEvent& at) { Note("wheel" + std::to_string(notches), at); };
    form.KeyDown = [this](Key key) {
      Note("key" + std::to_string(key.Code) + (key.With.Shift ? "s" : ""));
      keyAt = clock.Microseconds();
    };
    form.KeyUp = [this](Key) { held = clock.Microseconds() - keyAt; };
    label.Caption = std::string("two words");
  }

  // With button, keys, and the place where it isn't the middle.
  void Note(std::string what, const MouseEvent& at) {
    constexpr const char* kButtons[] = {"", "", "-right", "-middle"};
    what += kButtons[static_cast<int>(at.Button)];
    what += std::string(at.With.Shift ? "s" : "") + (at.With.Ctrl ? "c" : "");
    if (at.X != 0.5 || at.Y != 0.5) {
      what += "@" + std::to_string(std::lround(100 * at.X)) + "," + std::to_string(std::lround(100 * at.Y));
    }
    Note(what);
  }
  void Note(const std::string& what) { notes += (notes.empty() ? "" : " ") + what; }
  int Run(const std::string& script) {
    notes.clear();
    output.str("");
    ScriptHooks hooks;
    hooks.Shot = [this](const std::string& path, double scale, const std::string& panel) {
      Note(path + "@" + std::to_string(static_cast<int>(scale * 10)) + panel);
      return path != "bad.png";
    };
    hooks.Answer = [this](std::string answer) { boxes.AddAnswer(std::move(answer)); };
    ScriptRunner runner(registry, queue, clock, hooks, output);
    runner.Verbose = verbose;
    return runner.Run(script, "test.txt");
  }

  VirtualClock clock;
  VirtualEventQueue queue{clock};
  VirtualDialogs person;
  std::ostringstream output;
  ScriptDialogs boxes{person, output};
  ControlRegistry registry;
  Picture form{registry, "frmMain"};
  Label label{registry, "lblThing"};
  CheckBox box{registry, "chkThing"};
  OptionGroup group{registry, "optThing", 3};
  Slider slider{registry, "sldThing"};
  ComboBox combo{registry, "cboThing"};
  Menu menu{registry, "mnuThing", std::array<const char*, 2>{"First item", "Second"}};
  std::string notes;
  std::int64_t keyAt = 0, held = 0;
  bool verbose = false;
};

TEST_F(ScriptRunnerTest, GesturesArriveAsAHandWouldMakeThem) {
  struct Case {
    const char* Line;
    const char* Notes;
  };
  combo.SetItems({"1 KHz", "5 dHz"});
  combo.Click = [this] { Note("chosen" + std::to_string(combo.ListIndex())); };
  for (const Case& each :
       {Case{"click lblThing", "move down up click"},
        Case{"rightclick LBLTHING", "move down-right up-right"},
        Case{"click lblThing 0.25 1 shift", "moves@25,100 downs@25,100 ups@25,100 clicks@25,100"},
        Case{"doubleclick lblThing", "move down up click double up"},
        Case{"press lblThing 0.25 1", "move@25,100 down@25,100"},
        Case{"release lblThing", "up click"},
        Case{"wheel lblThing -2 shift ctrl", "movesc wheel-1sc wheel-1sc"},
        Case{"wheel lblThing 1 0 .5 ctrl", "movec@0,50 wheel1c@0,50"},
        Case{"hover lblThing 0.3 0.4", "move@30,40"},
        Case{"hover lblThing", "move"},
        Case{"click optThing(2)", "press2"},
        Case{"set chkThing 1", "on"},
        Case{"set sldThing 400", "scroll100"},
        Case{"wheel sldThing -2", "scroll99 scroll98"},
        Case{"choose cboThing 5 dHz", "chosen1"},
        Case{"choose mnuThing First item", "menu0"},
        Case{"key up shift", "key38s"},
        Case{"key z", "key90"},
        Case{"key pagedown", "key34"},
        Case{"shot a.png 1.5\nshot b.png", "a.png@15 b.png@10"},
        Case{"shot a.png frThing\nshot b.png 2 frThing", "a.png@10frThing b.png@20frThing"},
        Case{"  # a comment\n\nquit\nclick chkThing", ""}}) {
    EXPECT_EQ(Run(each.Line), ScriptRunner::kPassed) << each.Line << ": " << output.str();
    EXPECT_EQ(notes, each.Notes) << each.Line;
  }
  EXPECT_GE(held, 50000);
  box.Enabled = false;
  label.Visible = false;
  EXPECT_EQ(Run("click chkThing\nclick lblThing\nwheel lblThing 1\nrightclick lblThing"),
            ScriptRunner::kPassed);
  EXPECT_EQ(notes, "");
  EXPECT_EQ(Run("press lblThing\nrelease lblThing"), ScriptRunner::kPassed);
  EXPECT_EQ(notes, "up") << "what was pressed is let go, wherever it is by then";
}

TEST_F(ScriptRunnerTest, ADragMovesThereWithItsButtonHeldWhileTheRadioRuns) {
  EXPECT_EQ(Run("drag lblThing 0.2 0.5 0.7 0.5 middle"), ScriptRunner::kPassed) << output.str();
  EXPECT_EQ(notes.find("move@20,50 down-middle@20,50 move-middle@25,50 move-middle@30,50"), 0U) << notes;
  EXPECT_NE(notes.find("move-middle@70,50 up-middle@70,50"), std::string::npos) << notes;
  EXPECT_EQ(notes.find("click"), std::string::npos);
  EXPECT_EQ(clock.Microseconds(), hand::kDragMoves * 10000);
  EXPECT_EQ(Run("drag lblThing 0 0 1 1"), ScriptRunner::kPassed);
  EXPECT_NE(notes.find("up@100,100 click@100,100"), std::string::npos) << notes;
}

TEST_F(ScriptRunnerTest, KeysFollowTheFocus) {
  label.GotFocus = [this] { Note("got"); };
  label.LostFocus = [this] { Note("lost"); };
  label.KeyDown = [this](Key key) { Note("label" + std::to_string(key.Code)); };
  EXPECT_EQ(Run("focus lblThing\nkey home\nfocus chkThing\nkey home"), ScriptRunner::kPassed);
  EXPECT_EQ(notes, "got label36 lost key36") << "keys that a control leaves alone are the form's";
}

TEST_F(ScriptRunnerTest, WaitsOnTheClockOfTheQueue) {
  Timer timer(queue, [this] { label.Caption = std::string("done now"); });
  timer.SetInterval(700);
  timer.SetEnabled(true);
  EXPECT_EQ(Run("waitfor lblThing done now 1000"), ScriptRunner::kPassed);
  EXPECT_EQ(clock.Microseconds(), 700000);
  EXPECT_EQ(Run("wait 1300"), ScriptRunner::kPassed);
  EXPECT_EQ(clock.Microseconds(), 2000000);
  EXPECT_EQ(Run("waitfor lblThing never 50"), ScriptRunner::kExpectationFailed);
  EXPECT_NE(output.str().find("test.txt:1: lblThing did not become 'never' in 50 ms, it is 'done now'"),
            std::string::npos)
      << output.str();
}

TEST_F(ScriptRunnerTest, AnswersTheNextBoxAndOthersAreDeclined) {
  EXPECT_EQ(Run("answer yes\nanswer A new name"), ScriptRunner::kPassed);
  boxes.AsksPerson = false;
  const MessageRequest question{.Text = "Sure?", .Title = "Q", .Buttons = MessageButtons::YesNo};
  EXPECT_EQ(boxes.ShowMessage(question), MessageAnswer::Yes);
  EXPECT_EQ(boxes.AskText("t", "p", "s"), "A new name");
  EXPECT_EQ(boxes.ShowMessage(question), MessageAnswer::No);
  EXPECT_FALSE(boxes.AskText("t", "p", "s").has_value());
  EXPECT_TRUE(person.Messages.empty());
  EXPECT_NE(output.str().find("Sure?"), std::string::npos);
  boxes.AsksPerson = true;
  boxes.ShowMessage(question);
  EXPECT_EQ(person.Messages.size(), 1U);
}

// Boxes of the program's start come before its first line.
TEST_F(ScriptRunnerTest, FirstAnswersAreTakenBeforeItRuns) {
  std::string taken;
  const std::string rest = TakeAnswers("# first\nanswer yes\n\nanswer my file.wav\nwait 1\nanswer no\nbad\n",
                                       [&](const std::string& answer) { taken += answer + "|"; });
  EXPECT_EQ(taken, "yes|my file.wav|");
  EXPECT_EQ(Run(rest), 2);
  EXPECT_NE(output.str().find("test.txt:7: "), std::string::npos) << "lines keep their numbers";
  EXPECT_EQ(boxes.ShowMessage({.Text = "?", .Title = "Q", .Buttons = MessageButtons::YesNoCancel}),
            MessageAnswer::No);
}

TEST_F(ScriptRunnerTest, PrintsAndExpects) {
  EXPECT_EQ(Run("print lblthing\nexpect lblThing two   words\nexpect chkThing 0"), ScriptRunner::kPassed);
  EXPECT_EQ(output.str(), "lblThing = two words\n");
  label.Caption = std::string("two   words");  // as of a column of numbers
  EXPECT_EQ(Run("expect lblThing two words\nwaitfor lblThing two words 10"), ScriptRunner::kPassed);
  label.Caption = std::string("two words");
  EXPECT_EQ(Run("\nexpect lblThing one word\nclick chkThing"), ScriptRunner::kExpectationFailed);
  EXPECT_EQ(output.str(), "test.txt:2: lblThing should be 'one word', it is 'two words'\n");
  EXPECT_EQ(notes, "");
  label.Caption = std::string("-10 000 000.5 Hz, and more");
  EXPECT_EQ(Run("expectnear lblThing -10000000 1"), ScriptRunner::kPassed) << output.str();
  EXPECT_EQ(Run("expectnear lblThing -10000002 1"), ScriptRunner::kExpectationFailed);
  label.Caption = std::string("two words");
  EXPECT_EQ(Run("expectnear lblThing 2 1"), ScriptRunner::kExpectationFailed);
  verbose = true;
  label.ForeColour = 0x00FF80;
  label.Enabled = false;
  EXPECT_EQ(Run("print lblThing"), ScriptRunner::kPassed);
  EXPECT_EQ(output.str(), "lblThing = two words colour 00FF80 on none disabled visible\n");
  EXPECT_EQ(Run("dump"), ScriptRunner::kPassed);
  const std::string dump = output.str();
  EXPECT_EQ(std::count(dump.begin(), dump.end(), '\n'), static_cast<long>(registry.All().size()));
}

TEST_F(ScriptRunnerTest, AFaultNamesItsLine) {
  for (const char* line : {"clack lblThing",
                           "click lblNobody",
                           "click",
                           "click lblThing twice",
                           "wheel lblThing many",
                           "wheel lblThing 1 alt",
                           "wheel chkThing 1",
                           "hover lblThing left 7",
                           "hover lblThing 3 0.4",
                           "click lblThing 0.5",
                           "drag lblThing 0 0 1",
                           "drag lblThing 0 0 1 1 third",
                           "drag lblThing 0 0 1 2",
                           "focus lblNobody",
                           "shot a.png frThing 2",
                           "wheel lblThing 1e12",
                           "wait -1",
                           "wait nan",
                           "key f13",
                           "set chkThing maybe",
                           "choose cboThing nothing",
                           "shot bad.png",
                           "shot a.png 0",
                           "waitfor lblThing x soon",
                           "expect"}) {
    EXPECT_EQ(Run("# one\nprint lblThing\n" + std::string(line) + "\nclick chkThing"),
              ScriptRunner::kScriptFault)
        << line;
    EXPECT_NE(output.str().find("\ntest.txt:3: "), std::string::npos) << output.str();
    EXPECT_EQ(box.Value(), false) << line;
  }
}

}  // namespace
}  // namespace quorl::test
