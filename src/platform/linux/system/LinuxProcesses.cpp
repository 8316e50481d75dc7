#include "platform/linux/system/LinuxProcesses.h"

#include <fcntl.h>
#include <linux/close_range.h>
#include <signal.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <utility>

#include "platform/linux/system/ProcessTable.h"
#include "platform/linux/system/SystemError.h"

namespace quorl {
namespace {

// The library's own header of these two can't be linked to from C++ everywhere.
int HandleOf(pid_t process) {
  return static_cast<int>(syscall(SYS_pidfd_open, process, 0));
}

void Signal(const FileHandle& process, int number) {
  syscall(SYS_pidfd_send_signal, process.Get(), number, nullptr, 0);
}

// Text as a program's start takes it: pointers to each, a null behind them.
class TextList {
 public:
  explicit TextList(std::vector<std::string> texts) : texts_(std::move(texts)) {
    for (std::string& text : texts_) pointers_.push_back(text.data());
    pointers_.push_back(nullptr);
  }
  char* const* Data() const { return pointers_.data(); }

 private:
  std::vector<std::string> texts_;
  std::vector<char*> pointers_;
};

TextList Environment(const std::vector<std::string>& additions) {
  std::vector<std::string> all = additions;
  for (char** each = environ; *each != nullptr; ++each) all.emplace_back(*each);
  return TextList(std::move(all));
}

// Runs in the new process. Between fork and exec only async-signal-safe calls are allowed.
[[noreturn]] void Become(char* const* words, char* const* environment, const char* directory, int report) {
  setsid();
  for (const int each : {SIGTERM, SIGPIPE, SIGCHLD, SIGXFSZ}) signal(each, SIG_DFL);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  const int null = open("/dev/null", O_RDONLY);
  if (null >= 0) dup2(null, STDIN_FILENO);
  // Sound device, port and the settings' lock are ours, whatever library has opened them.
  close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
  if (directory[0] == '\0' || chdir(directory) == 0) execvpe(words[0], words, environment);
  const int error = errno;
  static_cast<void>(!write(report, &error, sizeof error));
  _exit(127);
}

// The pipe closes by itself when the program has taken over; else it carries the error number.
std::optional<int> ReadReport(int file) {
  int error = 0;
  ssize_t count;
  do {
    count = read(file, &error, sizeof error);
  } while (count < 0 && errno == EINTR);
  return count == sizeof error ? std::optional<int>(error) : std::nullopt;
}

void WaitForEnd(int process) {
  while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) continue;
}

}  // namespace

std::vector<std::string> SplitCommandLine(const std::string& line) {
  std::vector<std::string> words;
  std::optional<std::string> word;
  char quote = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    char c = line[i];
    const bool escaped = c == '\\' && i + 1 < line.size() && line[i + 1] == '"';
    if (escaped) c = line[++i];
    if (!escaped && quote == 0 && (c == ' ' || c == '\t')) {
      if (word) words.push_back(*std::exchange(word, std::nullopt));
      continue;
    }
    if (!word) word.emplace();
    if (!escaped && (quote != 0 ? c == quote : c == '"' || c == '\'')) {
      quote = quote != 0 ? 0 : c;
    } else {
      word->push_back(c);
    }
  }
  if (word) words.push_back(*word);
  return words;
}

LinuxProcesses::LinuxProcesses(EventQueue* queue, ProgramWindows* windows)
    : queue_(queue), windows_(windows) {}

LinuxProcesses::~LinuxProcesses() {
  ReapAll();
}

std::vector<int> LinuxProcesses::Find(const std::string& program, Failure& failure) const {
  return FindPrograms("/proc", geteuid(), program, failure);
}

int LinuxProcesses::Start(const ProgramStart& start, Failure& failure) {
  ReapAll();
  std::vector<std::string> all = SplitCommandLine(start.Arguments);
  all.insert(all.begin(), start.Program);
  const TextList words(std::move(all));
  const TextList environment =
      Environment(windows_ ? windows_->Environment(start.Window) : std::vector<std::string>());
  const auto fail = [&](int error, const char* advice) {
    failure = SystemError("start " + start.Program, error, advice);
    return 0;
  };
  constexpr const char* kAgain = "Close other programs and try again.";

  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return fail(errno, kAgain);
  FileHandle reading(ends[0]), writing(ends[1]);
  const pid_t child = fork();
  if (child < 0) return fail(errno, kAgain);
  if (child == 0) Become(words.Data(), environment.Data(), start.Directory.c_str(), ends[1]);
  FileHandle handle(HandleOf(child));
  if (!handle) {
    const int error = errno;
    kill(child, SIGKILL);  // nobody could watch it or ask it to close
    WaitForEnd(child);
    return fail(error, kAgain);
  }
  writing.Close();
  if (const std::optional<int> error = ReadReport(reading.Get())) {
    WaitForEnd(child);
    return fail(*error, "Check its path and that it may be run.");
  }
  Keep(child, std::move(handle));
  if (windows_) windows_->Wish(child, start.Window);
  failure.reset();
  return child;
}

void LinuxProcesses::Keep(int process, FileHandle handle) {
  Child& child = children_[process];
  child.Handle = std::move(handle);
  if (queue_) child.Watch = queue_->WatchFile(child.Handle.Get(), [this, process] { Reap(process); });
}

void LinuxProcesses::Reap(int process) {
  const auto child = children_.find(process);
  if (child == children_.end()) return;
  siginfo_t end{};
  const int result = waitid(P_PIDFD, static_cast<id_t>(child->second.Handle.Get()), &end, WEXITED | WNOHANG);
  // Whoever else has taken its end, it has ended.
  if (result == 0 ? end.si_pid == 0 : errno != ECHILD) return;
  children_.erase(child);
  if (windows_) windows_->Forget(process);
}

void LinuxProcesses::ReapAll() {
  std::vector<int> processes;
  for (const auto& [process, child] : children_) processes.push_back(process);
  for (const int process : processes) Reap(process);
}

bool LinuxProcesses::IsRunning(int process) {
  Reap(process);
  return children_.contains(process);
}

Processes::WindowNumber LinuxProcesses::FindWindow(int process) {
  return windows_ && IsRunning(process) ? windows_->Find(process) : 0;
}

void LinuxProcesses::CloseWindow(WindowNumber window) {
  if (windows_) windows_->Close(window);
}

void LinuxProcesses::Close(int process) {
  if (IsRunning(process)) Signal(children_.at(process).Handle, SIGTERM);
}

}  // namespace quorl
