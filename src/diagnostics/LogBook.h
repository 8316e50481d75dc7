// The lines of the log panel and the log file behind them: what a user sends in when something fails.
#pragma once

#include <deque>
#include <string>

#include "controls/Event.h"
#include "platform/Clock.h"
#include "platform/Files.h"

namespace quorl {

// Lines always reach the list. They reach the file too while tracing; it is opened and closed for every line,
// so that nothing is lost when the program dies. A file that can't be written is told once in the list, tried
// again with every line, and stops nothing.
class LogBook {
 public:
  // The list forgets its oldest lines beyond this many.
  static constexpr std::size_t kMostLines = 32767;

  // Both are used as long as the log lives. `path` is the log file.
  LogBook(Files& files, const Clock& clock, std::string path);

  // Begins the log. With `trace` the file is made new, with its directory, and dated in its first line, which
  // is not in the list.
  void Start(bool trace);
  bool Trace() const { return trace_; }
  const std::string& Path() const { return path_; }

  // One line, no line end.
  void AddLog(const std::string& text);
  // A run-time error: `place` is the routine's tag, `source` what raised it.
  void AddError(const std::string& place, int code, const std::string& description,
                const std::string& source);

  const std::deque<std::string>& Lines() const { return lines_; }
  // Index of the last line, kept in view; -1 in an empty list.
  int SelectedLine() const { return static_cast<int>(lines_.size()) - 1; }
  // Told every line as it enters the list.
  Event<const std::string&> OnLine;

 private:
  void AddToList(const std::string& text);
  void Report(const Failure& failure);

  Files& files_;
  const Clock& clock_;
  const std::string path_;
  bool trace_ = false;
  bool failureReported_ = false;
  std::deque<std::string> lines_;
};

}  // namespace quorl
