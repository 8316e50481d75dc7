#include "remote/RigctlSession.h"

#include <algorithm>

#include "remote/RigctlAnswer.h"
#include "remote/RigctlCommands.h"
#include "support/ScopedFlag.h"

namespace quorl {

namespace {

constexpr std::string_view kBlanks(" \t\r\v\f", 5);
constexpr std::string_view kSeparators = ";|,/!$";  // of an answer with names; '+' stands for the line feed
// No answer is longer: an echo of the whole line and the longest list of values.
constexpr std::size_t kLongestAnswer = RigctlSession::kLongestLine + 2048;

// A line from its front to its back.
class LineReader {
 public:
  explicit LineReader(std::string_view line) : line_(line) {}

  void SkipBlanks() { at_ = std::min(line_.find_first_not_of(kBlanks, at_), line_.size()); }
  bool AtEnd() const { return at_ == line_.size(); }
  char Next() { return line_[at_++]; }
  char Peek() const { return AtEnd() ? '\0' : line_[at_]; }
  // Up to the next blank; empty at the end of the line.
  std::string_view Word() {
    const std::size_t begin = at_;
    at_ = std::min(line_.find_first_of(kBlanks, at_), line_.size());
    return line_.substr(begin, at_ - begin);
  }
  void SkipAll() { at_ = line_.size(); }
  std::size_t Place() const { return at_; }

 private:
  std::string_view line_;
  std::size_t at_ = 0;
};

// The sign before a command, taken; 0 for none.
char TakeSign(LineReader& line) {
  const char sign = line.Peek();
  if (sign != '+' && (sign == '\0' || kSeparators.find(sign) == std::string_view::npos)) return '\0';
  line.Next();
  line.SkipBlanks();
  return sign == '+' ? '\n' : sign;
}

const RigctlCommand* TakeName(LineReader& line) {
  const char letter = line.Next();
  return letter == '\\' ? FindRigctlCommand(line.Word()) : FindRigctlCommand(letter);
}

std::string Joined(const RigctlParameters& parameters) {
  std::string text;
  for (const std::string_view parameter : parameters) {
    if (!text.empty() && !parameter.empty()) text += ' ';
    text += parameter;
  }
  return text;
}

}  // namespace

std::size_t RigctlSession::Take(std::string_view bytes, std::string& answers) {
  if (working_) return 0;
  const ScopedFlag working(working_);
  std::size_t taken = 0;
  for (int commands = 0; commands < kCommandsPerTurn && !ended_; ++commands) {
    if (answers.size() + kLongestAnswer > kMostWaiting) break;
    const std::size_t step = TakeCommand(bytes.substr(taken), answers);
    if (step == 0) break;
    taken += step;
  }
  return ended_ ? bytes.size() : taken;
}

// One command, with the end of its line where it is the last one there; 0 where the line isn't whole yet.
std::size_t RigctlSession::TakeCommand(std::string_view rest, std::string& answers) {
  const std::size_t length = rest.substr(0, kLongestLine + 1).find('\n');
  if (length == std::string_view::npos) {
    ended_ = rest.size() > kLongestLine;
    if (ended_) RigctlAnswer(answers, '\0').End(RigctlCode::Invalid);
    return 0;
  }
  LineReader line(rest.substr(0, length));
  line.SkipBlanks();
  RigctlAnswer answer(answers, TakeSign(line));
  if (line.AtEnd() || line.Peek() == '#') return length + 1;  // nothing, or a remark
  const RigctlCommand* const command = TakeName(line);
  if (command == nullptr) {
    // How many words belong to it is its secret.
    answer.End(RigctlCode::Unavailable);
    return length + 1;
  }
  RigctlParameters parameters;
  for (std::size_t i = 0; i < command->Parameters; ++i) {
    line.SkipBlanks();
    parameters[i] = line.Word();
  }
  line.SkipBlanks();
  if (command->HasCode) answer.Head(command->Name, Joined(parameters));
  const RigctlCode code = command->CarryOut(radio_, parameters, answer);
  command->HasCode ? answer.End(code) : answer.EndBare();
  ended_ = command->Ends;
  return line.AtEnd() ? length + 1 : line.Place();
}

}  // namespace quorl
