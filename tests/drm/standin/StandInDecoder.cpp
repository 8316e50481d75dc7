// Stands in for a decoder: writes down how it was started and how it ends, and behaves as a file beside it
// says.
//
// It is installed under any name. NAME.txt gets lines "argument ...", "directory ...", "ini ..." for those of
// Dream.ini in its directory, "asked" when it is asked to close, and "end". NAME.how holds one word: "obey"
// (as without the file), "slow" closes after 1.5 s, "refuse" stays, "die" ends at once.
#include <signal.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

volatile sig_atomic_t asked = 0;

void Note(const std::string& record, const std::string& line) {
  std::ofstream(record, std::ios::app) << line << "\n";
}

std::string Manner(const std::string& file) {
  std::string word = "obey";
  std::ifstream(file) >> word;
  return word;
}

void TellStart(const std::string& record, int count, char** arguments) {
  for (int i = 1; i < count; ++i) Note(record, std::string("argument ") + arguments[i]);
  Note(record, "directory " + std::filesystem::current_path().string());
  std::ifstream ini("Dream.ini");
  for (std::string line; std::getline(ini, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    Note(record, "ini " + line);
  }
  Note(record, "process " + std::to_string(getpid()));
}

}  // namespace

int main(int count, char** arguments) {
  struct sigaction action {};
  action.sa_handler = [](int) { asked = 1; };
  sigaction(SIGTERM, &action, nullptr);
  const std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
  const std::string record = self + ".txt", manner = Manner(self + ".how");
  TellStart(record, count, arguments);
  constexpr int kPatience = 120;  // s: a test that has gone wrong leaves nothing behind for ever
  alarm(kPatience);
  while (manner != "die") {
    if (asked == 0) {
      usleep(2000);
      continue;
    }
    asked = 0;
    Note(record, "asked");
    if (manner == "refuse") continue;
    constexpr int kSlow = 1'500'000;  // microseconds
    if (manner == "slow") usleep(kSlow);
    break;
  }
  Note(record, "end");
}
