#include "scripting/ScriptRunner.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <ostream>
#include <sstream>
#include <stdexcept>

#include "support/Text.h"

namespace quorl {

namespace {

constexpr int kKeyHeld = 55;  // ms: one tick of the tuning timer falls into it

struct Mismatch : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct NamedKey {
  const char* Name;
  int Code;
};
constexpr std::array<NamedKey, 6> kNamedKeys{{{"up", Key::Up},
                                              {"down", Key::Down},
                                              {"left", Key::Left},
                                              {"right", Key::Right},
                                              {"space", Key::Space},
                                              {"escape", Key::Escape}}};

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

std::optional<std::string> ScriptDialogs::NextAnswer() {
  if (answers_.empty()) return std::nullopt;
  std::string answer = std::move(answers_.front());
  answers_.pop_front();
  return answer;
}

MessageAnswer ScriptDialogs::ShowMessage(const MessageRequest& request) {
  output_ << "box: " << request.Title << ": " << request.Text << std::endl;
  const std::optional<std::string> answer = NextAnswer();
  if (!answer) {
    if (AsksPerson) return person_.ShowMessage(request);
    return request.Buttons == MessageButtons::Ok      ? MessageAnswer::Ok
           : request.Buttons == MessageButtons::YesNo ? MessageAnswer::No
                                                      : MessageAnswer::Cancel;
  }
  const bool yes = EqualsNoCase(*answer, "yes");
  if (request.Buttons == MessageButtons::Ok) return MessageAnswer::Ok;
  if (request.Buttons == MessageButtons::OkCancel) return yes ? MessageAnswer::Ok : MessageAnswer::Cancel;
  return yes ? MessageAnswer::Yes : MessageAnswer::No;
}

std::optional<std::string> ScriptDialogs::AskText(const std::string& title, const std::string& prompt,
                                                  const std::string& suggestion) {
  output_ << "box: " << title << ": " << prompt << std::endl;
  if (auto answer = NextAnswer()) return answer;
  return AsksPerson ? person_.AskText(title, prompt, suggestion) : std::nullopt;
}

std::optional<std::string> ScriptDialogs::AskOpenFile(const FileRequest& request) {
  if (auto answer = NextAnswer()) return answer;
  return AsksPerson ? person_.AskOpenFile(request) : std::nullopt;
}

std::optional<std::string> ScriptDialogs::AskSaveFile(const FileRequest& request) {
  if (auto answer = NextAnswer()) return answer;
  return AsksPerson ? person_.AskSaveFile(request) : std::nullopt;
}

std::optional<std::uint32_t> ScriptDialogs::AskColour(std::uint32_t suggestion) {
  if (const auto answer = NextAnswer()) {
    const auto number = ParseInt32(*answer);
    return number ? std::optional<std::uint32_t>(static_cast<std::uint32_t>(*number)) : std::nullopt;
  }
  return AsksPerson ? person_.AskColour(suggestion) : std::nullopt;
}

ScriptRunner::ScriptRunner(ControlRegistry& registry, EventQueue& queue, const Clock& clock,
                           ScriptHooks hooks, std::ostream& output)
    : registry_(registry), queue_(queue), clock_(clock), hooks_(std::move(hooks)), output_(output) {}

const std::vector<ScriptRunner::Command>& ScriptRunner::Commands() {
  constexpr std::size_t kAny = 1000;
  static const std::vector<Command> commands{
      {"click", 1, 1, &ScriptRunner::Click},
      {"rightclick", 1, 1, &ScriptRunner::RightClick},
      {"doubleclick", 1, 1, &ScriptRunner::DoubleClick},
      {"set", 2, kAny, &ScriptRunner::Set},
      {"choose", 2, kAny, &ScriptRunner::Set},
      {"wheel", 2, 4, &ScriptRunner::Wheel},
      {"key", 1, 3, &ScriptRunner::PressKey},
      {"hover", 1, 3, &ScriptRunner::Hover},
      {"wait", 1, 1, &ScriptRunner::Wait},
      {"waitfor", 3, kAny, &ScriptRunner::WaitFor},
      {"answer", 1, kAny, &ScriptRunner::Answer},
      {"print", 1, 1, &ScriptRunner::Print},
      {"expect", 1, kAny, &ScriptRunner::Expect},
      {"shot", 1, 2, &ScriptRunner::Shot},
      {"dump", 0, 0, &ScriptRunner::Dump},
      {"quit", 0, 0, &ScriptRunner::Quit},
  };
  return commands;
}

int ScriptRunner::Run(const std::string& text, const std::string& name) {
  std::istringstream lines(text);
  std::string line;
  quit_ = false;
  for (int number = 1; !quit_ && std::getline(lines, line); ++number) {
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
  Control& control = Find(words[0]);
  if (!control.Enabled() || !control.Visible()) return;
  Raise(control.MouseMove);
  Raise(control.MouseDown, MouseButton::Left);
  control.UserClick();
  Raise(control.MouseUp, MouseButton::Left);
}

void ScriptRunner::RightClick(const Words& words) {
  Control& control = Find(words[0]);
  if (!control.Enabled() || !control.Visible()) return;
  Raise(control.MouseMove);
  Raise(control.MouseDown, MouseButton::Right);
  Raise(control.MouseUp, MouseButton::Right);
}

void ScriptRunner::DoubleClick(const Words& words) {
  Control& control = Find(words[0]);
  if (control.Enabled() && control.Visible()) Raise(control.DblClick);
}

void ScriptRunner::Set(const Words& words) {
  const std::string value = Rest(words, 1);
  if (!Find(words[0]).UserSet(value)) throw std::runtime_error(words[0] + " can't be set to '" + value + "'");
}

void ScriptRunner::Wheel(const Words& words) {
  Control& control = Find(words[0]);
  const int notches = static_cast<int>(NumberOf(words[1], -10000.0, 10000.0));
  const Modifiers with = ModifiersIn(words, 2);
  if (!control.Enabled() || !control.Visible()) return;
  Raise(control.MouseMove);
  for (int i = 0; i < std::abs(notches); ++i) {
    const int notch = notches > 0 ? 1 : -1;
    if (control.Wheel) {
      control.Wheel(notch, with);
    } else if (!control.UserTurn(notch, with)) {
      throw std::runtime_error(words[0] + " has nothing that the wheel turns");
    }
  }
}

// Held until the tuning timer has seen it, then let go.
void ScriptRunner::PressKey(const Words& words) {
  const Key key{KeyCode(words[0]), ModifiersIn(words, 1)};
  Control& form = Find("frmMain");
  Raise(form.KeyDown, key);
  Pass(kKeyHeld, [] { return false; });
  Raise(form.KeyUp, key);
}

void ScriptRunner::Hover(const Words& words) {
  const Control& control = Find(words[0]);
  for (std::size_t i = 1; i < words.size(); ++i) NumberOf(words[i], 0.0);
  Raise(control.MouseMove);
}

void ScriptRunner::Wait(const Words& words) {
  Pass(static_cast<int>(NumberOf(words[0], 0.0)), [] { return false; });
}

void ScriptRunner::WaitFor(const Words& words) {
  const Control& control = Find(words[0]);
  const std::string wanted = Rest(Words(words.begin(), words.end() - 1), 1);
  const int patience = static_cast<int>(NumberOf(words.back(), 0.0));
  if (Pass(patience, [&] { return Rest(WordsOf(control.Text()), 0) == wanted; })) return;
  throw Mismatch(control.Name() + " did not become '" + wanted + "' in " + words.back() + " ms, it is '" +
                 control.Text() + "'");
}

bool ScriptRunner::Pass(int milliseconds, const std::function<bool()>& until) {
  const std::int64_t end = clock_.Microseconds() + std::int64_t{1000} * milliseconds;
  while (!until()) {
    const std::int64_t left = end - clock_.Microseconds();
    if (left <= 0) return false;
    queue_.Wait(std::chrono::milliseconds(std::clamp<std::int64_t>(left / 1000, 1, 20)));
  }
  return true;
}

void ScriptRunner::Answer(const Words& words) {
  hooks_.Answer(Rest(words, 0));
}

void ScriptRunner::PrintControl(const Control& control) const {
  output_ << control.Name() << " = " << control.Text();
  if (Verbose) {
    char colours[48];
    std::snprintf(colours, sizeof colours, " colour %06X on %06X", control.ForeColour(),
                  control.BackColour());
    output_ << colours << (control.Enabled() ? " enabled" : " disabled")
            << (control.Visible() ? " visible" : " hidden");
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

void ScriptRunner::Shot(const Words& words) {
  const double scale = words.size() > 1 ? NumberOf(words[1], 0.1, 8.0) : 1.0;
  if (!hooks_.Shot || !hooks_.Shot(words[0], scale)) {
    throw std::runtime_error("can't write the picture " + words[0]);
  }
}

void ScriptRunner::Dump(const Words&) {
  for (const Control* control : registry_.All()) PrintControl(*control);
}

void ScriptRunner::Quit(const Words&) {
  quit_ = true;
}

}  // namespace quorl
