// A sound server of the test's own, with two sinks that go nowhere, reached by a local socket only.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace quorl {

// A program that the test started; ended with the object.
class Child {
 public:
  // Found on the PATH; standard output and error go to `log`.
  Child(const std::vector<std::string>& command, const std::string& log);
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  bool Runs();
  // Waits for its own end; the exit code.
  int Wait();
  void Send(int signal);

 private:
  pid_t pid_ = -1;
  int status_ = 0;
};

class PulseServer {
 public:
  // True where the machine has the sound server and its tools.
  static bool IsInstalled();

  // Sinks "Antenna" and "Loud Speaker", at 48000 Hz; the process talks to this server from then on.
  PulseServer();
  ~PulseServer();
  // Answers within some seconds.
  bool IsReady();
  // Answers nobody until it is let go.
  void Hang(bool on);
  // Runs pactl with the arguments; its exit code.
  int Control(const std::vector<std::string>& arguments) const;
  std::string Path(const std::string& file) const { return directory_ + "/" + file; }

 private:
  std::string directory_;
  std::optional<Child> server_;
};

}  // namespace quorl
