#include "scripting/ScriptRunner.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ostream>
#include <sstream>
#include <stdexcept>

#include "controls/Hand.h"
#include "support/Text.h"

namespace quorl {

namespace {

constexpr int kDragPause = 10;  // ms between two moves
constexpr int kKeyHeld = 55;    // ms: one tick of the tuning timer falls into it

struct Mismatch : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct NamedKey {
  const char* Name;
  int Code;
};
constexpr std::array kNamedKeys{NamedKey{"up", Key::Up},          NamedKey{"down", Key::Down},
                                NamedKey{"left", Key::Left},      NamedKey{"right", Key::Right},
                                NamedKey{"space", Key::Space},    NamedKey{"escape", Key::Escape},
                                NamedKey{"enter", Key::Enter},    NamedKey{"backspace", Key::Backspace},
                                NamedKey{"pageup", Key::PageUp},  NamedKey{"pagedown", Key::PageDown},
                                NamedKey{"home", Key::Home},      NamedKey{"end", Key::End},
                                NamedKey{"insert", Key::Insert},  NamedKey{"delete", Key::Delete},
                                NamedKey{"control", Key::Control}};

int KeyCode(const std::string& name) {
  for (const NamedKey& key : kNamedKeys) {
    if (EqualsNoCase(name, key.Name)) return key.Code;
  }
  if (name.size() == 1 && std::isalnum(static_cast<unsigned char>(name[0])) != 0) {
    return std::toupper(static_cast<unsigned char>(name[0]));
  }
  throw std::runtime_error("no key is called '" + name + "'");
}

Modifiers ModifiersIn(const std::vector<std::string>& words, std::size_t from) {
  Modifiers with;
  for (std::size_t i = from; i < words.size(); ++i) {
    if (words[i] == "shift") {
      with.Shift = true;
    } else if (words[i] == "ctrl") {
      with.Ctrl = true;
    } else {
      throw std::runtime_error("'" + words[i] + "' is neither shift nor ctrl");
    }
  }
  return with;
}

double NumberOf(const std::string& text, double least, double most = 2e9) {
  const std::optional<double> number = ParseDouble(text);
  if (!number || *number < least || *number > most)
    throw std::runtime_error("'" + text + "' is not a number that fits here");
  return *number;
}

double ShareOf(const std::string& text) {
  return NumberOf(text, 0.0, 1.0);
}

// "[X Y] [shift|ctrl]": a place within the control, else its middle, and the keys held with it.
MouseEvent GestureIn(const std::vector<std::string>& words, std::size_t from, MouseButton button) {
  MouseEvent at{.Button = button};
  if (from < words.size() && ParseDouble(words[from])) {
    if (from + 1 == words.size()) throw std::runtime_error("a place is two numbers, from 0 to 1");
    at.X = ShareOf(words[from]);
    at.Y = ShareOf(words[from + 1]);
    from += 2;
  }
  at.With = ModifiersIn(words, from);
  return at;
}

MouseButton ButtonIn(const std::string& name) {
  if (name == "left") return MouseButton::Left;
  if (name == "middle") return MouseButton::Middle;
  if (name == "right") return MouseButton::Right;
  throw std::runtime_error("no button is called '" + name + "'");
}

std::vector<std::string> WordsOf(const std::string& text) {
  std::istringstream in(text);
  std::vector<std::string> words;
  for (std::string word; in >> word;) words.push_back(word);
  return words;
}

// All words from `from` on, with single blanks between.
std::string Rest(const std::vector<std::string>& words, std::size_t from) {
  std::string text;
  for (std::size_t i = from; i < words.size(); ++i) text += (i > from ? " " : "") + words[i];
  return text;
}

}  // namespace

ScriptRunner::ScriptRunner(ControlRegistry& registry, EventQueue& queue, const Clock& clock,
                           ScriptHooks hooks, std::ostream& output)
    : registry_(registry), queue_(queue), clock_(clock), hooks_(std::move(hooks)), output_(output) {}

const std::vector<ScriptRunner::Command>& ScriptRunner::Commands() {
  constexpr std::size_t kAny = 1000;
  static const std::vector<Command> commands{
      {"click", 1, 5, &ScriptRunner::Click},
      {"rightclick", 1, 5, &ScriptRunner::RightClick},
      {"doubleclick", 1, 5, &ScriptRunner::DoubleClick},
      {"press", 1, 5, &ScriptRunner::Press},
      {"release", 1, 5, &ScriptRunner::Release},
      {"set", 2, kAny, &ScriptRunner::Set},
      {"choose", 2, kAny, &ScriptRunner::Set},
      {"wheel", 2, 6, &ScriptRunner::Wheel},
      {"drag", 5, 6, &ScriptRunner::Drag},
      {"key", 1, 3, &ScriptRunner::PressKey},
      {"focus", 1, 1, &ScriptRunner::Focus},
      {"hover", 1, 5, &ScriptRunner::Hover},
      {"wait", 1, 1, &ScriptRunner::Wait},
      {"waitfor", 3, kAny, &ScriptRunner::WaitFor},
      {"answer", 1, kAny, &ScriptRunner::Answer},
      {"print", 1, 1, &ScriptRunner::Print},
      {"expect", 1, kAny, &ScriptRunner::Expect},
      {"expectnear", 3, 3, &ScriptRunner::ExpectNear},
      {"shot", 1, 3, &ScriptRunner::Shot},
      {"dump", 0, 0, &ScriptRunner::Dump},
      {"quit", 0, 0, &ScriptRunner::Quit},
  };
  return commands;
}

int ScriptRunner::Run(const std::string& text, const std::string& name) {
  std::istringstream lines(text);
  std::string line;
  quit_ = false;
  for (int number = 1; !IsDone() && std::getline(lines, line); ++number) {
    const std::string place = name + ":" + std::to_string(number) + ": ";
    try {
      RunLine(line);
    } catch (const Mismatch& mismatch) {
      output_ << place << mismatch.what() << std::endl;
      return kExpectationFailed;
    } catch (const std::runtime_error& fault) {
      output_ << place << fault.what() << std::endl;
      return kScriptFault;
    }
  }
  return kPassed;
}

void ScriptRunner::RunLine(const std::string& line) {
  Words words = WordsOf(line);
  if (words.empty() || words[0][0] == '#') return;
  const std::string name = words[0];
  words.erase(words.begin());
  for (const Command& command : Commands()) {
    if (name != command.Name) continue;
    if (words.size() < command.Least || words.size() > command.Most) {
      throw std::runtime_error("'" + name + "' has too few or too many words");
    }
    (this->*command.Run)(words);
    queue_.Yield();
    return;
  }
  throw std::runtime_error("no command is called '" + name + "'");
}

Control& ScriptRunner::Find(const std::string& name) const {
  Control* control = registry_.Find(name);
  if (control == nullptr) throw std::runtime_error("no control is called '" + name + "'");
  return *control;
}

void ScriptRunner::Click(const Words& words) {
  hand::Click(Find(words[0]), GestureIn(words, 1, MouseButton::Left));
}

void ScriptRunner::RightClick(const Words& words) {
  hand::Click(Find(words[0]), GestureIn(words, 1, MouseButton::Right));
}

void ScriptRunner::DoubleClick(const Words& words) {
  hand::DoubleClick(Find(words[0]), GestureIn(words, 1, MouseButton::Left));
}

void ScriptRunner::Press(const Words& words) {
  hand::Press(Find(words[0]), GestureIn(words, 1, MouseButton::Left));
}

void ScriptRunner::Release(const Words& words) {
  hand::Release(Find(words[0]), GestureIn(words, 1, MouseButton::Left));
}

void ScriptRunner::Set(const Words& words) {
  const std::string value = Rest(words, 1);
  if (!Find(words[0]).UserSet(value)) throw std::runtime_error(words[0] + " can't be set to '" + value + "'");
}

void ScriptRunner::Wheel(const Words& words) {
  const int notches = static_cast<int>(NumberOf(words[1], -10000.0, 10000.0));
  if (!hand::Turn(Find(words[0]), notches, GestureIn(words, 2, MouseButton::None))) {
    throw std::runtime_error(words[0] + " has nothing that the wheel turns");
  }
}

void ScriptRunner::Drag(const Words& words) {
  MouseEvent from{ShareOf(words[1]), ShareOf(words[2]), MouseButton::Left, {}};
  if (words.size() > 5) from.Button = ButtonIn(words[5]);
  hand::Drag(Find(words[0]), from, {ShareOf(words[3]), ShareOf(words[4])},
             [this] { Pass(kDragPause, [] { return false; }); });
}

// Held until the tuning timer has seen it, then let go.
void ScriptRunner::PressKey(const Words& words) {
  const Key key{KeyCode(words[0]), ModifiersIn(words, 1)};
  BringKey(key, true);
  Pass(kKeyHeld, [] { return false; });
  BringKey(key, false);
}

void ScriptRunner::BringKey(const Key& key, bool down) {
  if (hooks_.PressKey) {
    hooks_.PressKey(key, down);
    return;
  }
  const Control* focused = registry_.Find(focused_);
  const Control& control = focused != nullptr && focused->KeyDown ? *focused : Find("frmMain");
  (down ? control.KeyDown : control.KeyUp)(key);
}

void ScriptRunner::Focus(const Words& words) {
  const Control& control = Find(words[0]);
  if (hooks_.Focus) {
    if (!hooks_.Focus(control)) throw std::runtime_error(words[0] + " does not take the keyboard");
    return;
  }
  if (const Control* before = registry_.Find(focused_)) before->LostFocus();
  focused_ = control.Name();
  control.GotFocus();
}

void ScriptRunner::Hover(const Words& words) {
  hand::Hover(Find(words[0]), GestureIn(words, 1, MouseButton::None));
}

void ScriptRunner::Wait(const Words& words) {
  Pass(static_cast<int>(NumberOf(words[0], 0.0)), [] { return false; });
}

void ScriptRunner::WaitFor(const Words& words) {
  const Control& control = Find(words[0]);
  const std::string wanted = Rest(Words(words.begin(), words.end() - 1), 1);
  const int patience = static_cast<int>(NumberOf(words.back(), 0.0));
  if (Pass(patience, [&] { return Rest(WordsOf(control.Text()), 0) == wanted; }) || IsDone()) return;
  throw Mismatch(control.Name() + " did not become '" + wanted + "' in " + words.back() + " ms, it is '" +
                 control.Text() + "'");
}

bool ScriptRunner::Pass(int milliseconds, const std::function<bool()>& until) {
  const std::int64_t end = clock_.Microseconds() + std::int64_t{1000} * milliseconds;
  while (!until() && !hooks_.IsClosing()) {
    const std::int64_t left = end - clock_.Microseconds();
    if (left <= 0) return false;
    queue_.Wait(std::chrono::milliseconds(std::clamp<std::int64_t>(left / 1000, 1, 20)));
  }
  return true;
}

void ScriptRunner::Answer(const Words& words) {
  hooks_.Answer(Rest(words, 0));
}

namespace {

std::string ColourText(Colour colour) {
  if (colour == kNoColour) return "none";
  char text[16];
  std::snprintf(text, sizeof text, "%06X", colour);
  return text;
}

}  // namespace

void ScriptRunner::PrintControl(const Control& control) const {
  output_ << control.Name() << " = " << control.Text();
  if (Verbose) {
    output_ << " colour " << ColourText(control.ForeColour()) << " on " << ColourText(control.BackColour())
            << (control.Enabled() ? " enabled" : " disabled") << (control.Visible() ? " visible" : " hidden");
  }
  output_ << std::endl;
}

void ScriptRunner::Print(const Words& words) {
  PrintControl(Find(words[0]));
}

void ScriptRunner::Expect(const Words& words) {
  const Control& control = Find(words[0]);
  const std::string wanted = Rest(words, 1);
  if (Rest(WordsOf(control.Text()), 0) == wanted) return;
  throw Mismatch(control.Name() + " should be '" + wanted + "', it is '" + control.Text() + "'");
}

// A number may stand with blanks between its digits, and before a unit.
void ScriptRunner::ExpectNear(const Words& words) {
  const Control& control = Find(words[0]);
  const double wanted = NumberOf(words[1], -2e9), by = NumberOf(words[2], 0.0);
  const std::string text = control.Text();
  const auto number = ParseTyped(text.substr(0, text.find_first_not_of("+-.0123456789 ")));
  if (number && std::abs(*number - wanted) <= by) return;
  throw Mismatch(control.Name() + " should be " + words[1] + " to within " + words[2] + ", it is '" + text +
                 "'");
}

void ScriptRunner::Shot(const Words& words) {
  const bool scaled = words.size() > 1 && ParseDouble(words[1]);
  const double scale = scaled ? NumberOf(words[1], 0.1, 8.0) : 1.0;
  const std::size_t named = scaled ? 2 : 1;
  if (words.size() > named + 1) throw std::runtime_error("'" + words[1] + "' is not a scale");
  const std::string panel = words.size() > named ? words[named] : std::string();
  if (!hooks_.Shot || !hooks_.Shot(words[0], scale, panel)) {
    throw std::runtime_error("can't write the picture " + words[0] + (panel.empty() ? "" : " of " + panel));
  }
}

void ScriptRunner::Dump(const Words&) {
  for (const Control* control : registry_.All()) PrintControl(*control);
}

void ScriptRunner::Quit(const Words&) {
  quit_ = true;
}

std::string TakeAnswers(const std::string& text, const std::function<void(std::string answer)>& answer) {
  std::istringstream lines(text);
  std::string rest, line;
  bool begun = false;
  while (std::getline(lines, line)) {
    const std::vector<std::string> words = WordsOf(line);
    const bool answers = !begun && words.size() > 1 && words[0] == "answer";
    begun = begun || !(answers || words.empty() || words[0][0] == '#');
    if (answers) answer(Rest(words, 1));
    rest += (answers ? "" : line) + "\n";
  }
  return rest;
}

}  // namespace quorl
