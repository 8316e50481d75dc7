#include "platform/linux/system/LinuxProcesses.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <optional>
#include <utility>

#include "platform/linux/system/FileHandle.h"
#include "platform/linux/system/SystemError.h"
#include "support/Text.h"

namespace quorl {
namespace {

namespace fs = std::filesystem;

std::string FileName(const std::string& path) {
  return path.substr(path.find_last_of("/\\") + 1);
}

bool SameName(const std::string& a, const std::string& b) {
  return !a.empty() && EqualsNoCase(FileName(a), b);
}

std::string FirstPart(const fs::path& file, char end) {
  std::ifstream stream(file);
  std::string part;
  std::getline(stream, part, end);
  return part;
}

// A process that has ended and waits for its parent keeps its name but no longer runs.
bool HasEnded(const fs::path& process) {
  const std::string line = FirstPart(process / "stat", '\n');
  const std::size_t name = line.rfind(") ");
  return name == std::string::npos || name + 2 >= line.size() || line[name + 2] == 'Z';
}

bool RunsProgram(const fs::path& process, const std::string& program) {
  std::error_code error;
  const bool same = SameName(fs::read_symlink(process / "exe", error).string(), program) ||
                    SameName(FirstPart(process / "cmdline", '\0'), program) ||
                    SameName(FirstPart(process / "comm", '\n'), program);
  return same && !HasEnded(process);
}

// Runs in the new process. Between fork and exec only async-signal-safe calls are allowed.
[[noreturn]] void Become(const char* program, char* const* words, const char* directory, int report) {
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  const int null = open("/dev/null", O_RDONLY);
  if (null >= 0) dup2(null, STDIN_FILENO);
  if (directory[0] == '\0' || chdir(directory) == 0) execvp(program, words);
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

std::vector<int> LinuxProcesses::Find(const std::string& program) const {
  std::vector<int> found;
  std::error_code error;
  for (fs::directory_iterator entry("/proc", error), end; !error && entry != end; entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    int process = 0;
    const auto parsed = std::from_chars(name.data(), name.data() + name.size(), process);
    if (parsed.ec != std::errc() || parsed.ptr != name.data() + name.size()) continue;
    if (RunsProgram(entry->path(), program)) found.push_back(process);
  }
  std::sort(found.begin(), found.end());
  return found;
}

Failure LinuxProcesses::Start(const std::string& program, const std::string& arguments,
                              const std::string& directory) {
  std::vector<std::string> words = SplitCommandLine(arguments);
  words.insert(words.begin(), program);
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);

  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return SystemError("start " + program, errno);
  FileHandle reading(ends[0]), writing(ends[1]);
  const pid_t between = fork();
  if (between < 0) return SystemError("start " + program, errno);
  if (between == 0) {
    setsid();
    const pid_t child = fork();
    if (child == 0) Become(program.c_str(), pointers.data(), directory.c_str(), ends[1]);
    const int error = errno;
    if (child < 0) static_cast<void>(!write(ends[1], &error, sizeof error));
    _exit(0);
  }
  writing.Close();
  while (waitpid(between, nullptr, 0) < 0 && errno == EINTR) continue;
  const std::optional<int> error = ReadReport(reading.Get());
  if (!error) return {};
  return SystemError("start " + program, *error, "Check its path and that it may be run.");
}

void LinuxProcesses::Close(int process) {
  // Zero and below would address whole groups of processes.
  if (process > 0) kill(process, SIGTERM);
}

}  // namespace quorl
