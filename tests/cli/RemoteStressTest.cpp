// The built quorlsdr-cli under clients that mean no good, in real time: the sound goes on, the others are
// served, and memory stays bounded.
#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <chrono>
#include <csignal>
#include <nlohmann/json.hpp>
#include <regex>

#include "cli/ListenRig.h"
#include "platform/linux/system/FileHandle.h"

namespace quorl::test {
namespace {

using Timepoint = std::chrono::steady_clock::time_point;
constexpr std::chrono::seconds kPatience{60};  // never waited out by a radio that works

#ifdef __SANITIZE_ADDRESS__               // which keeps what was freed
constexpr long kMostGrowth = 512 * 1024;  // kB
#else
constexpr long kMostGrowth = 4 * 1024;
#endif

std::string Times(int count, const std::string& text) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

double SecondsSince(Timepoint begin) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

// A client whose reads and writes end at the latest when patience does.
class Client {
 public:
  explicit Client(std::uint16_t port) : file_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = htons(port);
    to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(connect(file_.Get(), reinterpret_cast<sockaddr*>(&to), sizeof to), 0);
    fcntl(file_.Get(), F_SETFL, O_NONBLOCK);
  }
  // What the other side takes at once; -1 where it has gone.
  ssize_t Push(std::string_view bytes) { return send(file_.Get(), bytes.data(), bytes.size(), MSG_NOSIGNAL); }
  // All of it, or as much as is taken before the other side goes.
  void Send(std::string_view bytes) {
    while (!bytes.empty() && Wait(POLLOUT)) {
      const ssize_t sent = Push(bytes);
      if (sent < 0 && errno != EAGAIN) return;
      if (sent > 0) bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
  }
  void EndWriting() { shutdown(file_.Get(), SHUT_WR); }
  // Up to so many bytes, or to the end.
  std::string Read(std::size_t bytes) {
    std::string all;
    std::array<char, 4096> piece;
    while (all.size() < bytes && Wait(POLLIN)) {
      const ssize_t read = recv(file_.Get(), piece.data(), std::min(piece.size(), bytes - all.size()), 0);
      if (read == 0 || (read < 0 && errno != EAGAIN)) break;
      if (read > 0) all.append(piece.data(), static_cast<std::size_t>(read));
    }
    return all;
  }
  std::string ReadLine() {
    std::string line;
    while (line.empty() || line.back() != '\n') {
      const std::string next = Read(1);
      if (next.empty()) break;
      line += next;
    }
    return line;
  }
  std::string Ask(const std::string& line) {
    Send(line + "\n");
    return ReadLine();
  }

 private:
  bool Wait(short what) const {
    pollfd file{file_.Get(), what, 0};
    return poll(&file, 1, static_cast<int>(std::chrono::milliseconds(kPatience).count())) == 1;
  }

  FileHandle file_;
};

class RemoteStress : public ListenTest {
 protected:
  ~RemoteStress() override {
    if (child_ > 0) kill(child_, SIGKILL);
    if (child_ > 0) waitpid(child_, nullptr, 0);
  }

  void StartRadio() {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    child_ = fork();
    if (child_ == 0) RunRadio(ends[1]);
    close(ends[1]);
    errors_ = FileHandle(ends[0]);
    const std::string told = ReadErrors("\n");
    std::smatch found;
    ASSERT_TRUE(std::regex_search(told, found, std::regex("remote control at 127\\.0\\.0\\.1:(\\d+)\n")))
        << told;
    port_ = static_cast<std::uint16_t>(std::stoi(found[1]));
  }
  // Its report.
  nlohmann::json StopRadio() {
    kill(child_, SIGINT);
    int status = 0;
    waitpid(std::exchange(child_, -1), &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    return nlohmann::json::parse(ReadErrors("}\n"));
  }
  // Of the radio, in kB.
  long PeakMemory() const {
    std::smatch found;
    const std::string status = Slurp("/proc/" + std::to_string(child_) + "/status");
    return std::regex_search(status, found, std::regex("VmHWM:\\s+(\\d+)")) ? std::stol(found[1]) : 0;
  }
  // Asks in between, as a logger does.
  void Probe() {
    const Timepoint begin = std::chrono::steady_clock::now();
    const std::string answer = probe_->Ask("f");
    EXPECT_TRUE(std::regex_match(answer, std::regex("\\d+\n"))) << answer;
    longestProbe_ = std::max(longestProbe_, SecondsSince(begin));
  }

  std::uint16_t port_ = 0;
  std::optional<Client> probe_;
  double longestProbe_ = 0.0;

 private:
  [[noreturn]] void RunRadio(int errors) const {
    if (chdir(folder_.c_str()) != 0) _exit(127);
    setenv("XDG_CONFIG_HOME", "config", 1);
    setenv("PULSE_SERVER", "unix:/nowhere", 1);
    dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
    dup2(errors, STDERR_FILENO);
    execl(QUORL_CLI, QUORL_CLI, "listen", "--demo", "--folder", "band", "--frequency", "7205", "--output",
          "a.wav", "--remote", "0", "--quiet", "--report", nullptr);
    _exit(127);
  }
  // What it tells from here to that text, or to its end.
  std::string ReadErrors(const std::string& end) const {
    std::string told;
    char next = 0;
    pollfd file{errors_.Get(), POLLIN, 0};
    while (!told.ends_with(end) && poll(&file, 1, 60000) == 1 && read(errors_.Get(), &next, 1) == 1)
      told += next;
    return told;
  }

  pid_t child_ = -1;
  FileHandle errors_;
};

TEST_F(RemoteStress, WhateverClientsSendNoBlockIsLostAndOthersAreServed) {
  StartRadio();
  const Timepoint begin = std::chrono::steady_clock::now();
  probe_.emplace(port_);
  Probe();
  const long before = PeakMemory();

  {  // A hundred at once: those there is room for are served, each other one gets its line and the end.
    std::vector<Client> crowd;
    for (int i = 0; i < 100; ++i) crowd.emplace_back(port_);
    int served = 0, refused = 0;
    for (Client& client : crowd) {
      const std::string answer = client.Ask("f");
      served += answer == "7205000\n" ? 1 : 0;
      if (answer.find("64 programs are connected") == 0) refused += client.Read(1).empty() ? 1 : 0;
    }
    EXPECT_EQ(served, 63);
    EXPECT_EQ(refused, 37);
    Probe();
  }

  std::vector<Client> halfOpen, noisy;
  for (int i = 0; i < 16; ++i) {
    halfOpen.emplace_back(port_).Push("F 71");
    if (i % 2 == 0) halfOpen.back().EndWriting();
    Probe();
  }
  for (int i = 0; i < 8; ++i) {
    Client& client = noisy.emplace_back(port_);
    client.Send(std::string(1 << 20, i % 2 == 0 ? 'x' : '\0'));
    Probe();
  }

  // Read by nobody, until no more is taken.
  Client deaf(port_);
  const std::string flood = Times(10000, "f\n");
  std::size_t taken = 0;
  const Timepoint deafSince = std::chrono::steady_clock::now();
  for (int quiet = 0; quiet < 20; Probe()) {
    const ssize_t sent = deaf.Push(flood);
    quiet = sent > 0 ? 0 : quiet + 1;
    if (sent > 0) taken += static_cast<std::size_t>(sent);
    ASSERT_LT(SecondsSince(deafSince), 30.0);
  }
  EXPECT_LT(taken, 8U << 20U);

  // Ten thousand in one packet, of each kind that costs something.
  for (const std::string command : {"f", "F 7206000", "F 7205000", "l STRENGTH", "L AF 0.5"}) {
    Client busy(port_);
    const bool sets = command.find(' ') != std::string::npos && command[0] != 'l';
    busy.Send(Times(10000, command + "\n"));
    Probe();
    int lines = 0;
    for (; lines < 10000; ++lines) {
      const std::string answer = busy.ReadLine();
      if (answer.empty() || (sets && answer != "RPRT 0\n")) break;
      if (lines % 500 == 0) Probe();
    }
    EXPECT_EQ(lines, 10000) << command;
  }
  Client modes(port_);
  modes.Send(Times(1000, "M USB 2400\nM AM 0\nM CW -1\n"));
  for (int i = 0; i < 3000; ++i) {
    EXPECT_EQ(modes.ReadLine(), "RPRT 0\n");
    if (i % 500 == 0) Probe();
  }

  const long grown = PeakMemory() - before;
  const double seconds = SecondsSince(begin);
  const nlohmann::json report = StopRadio();
  EXPECT_EQ(report["overruns"], 0);
  EXPECT_EQ(report["underruns"], 0);
  const double received = static_cast<double>(GetWav("a.wav").size()) / 48000.0;
  EXPECT_GT(received, seconds - 0.5) << "in step with the clock";
  EXPECT_LT(longestProbe_, 1.0);
  EXPECT_LT(grown, kMostGrowth) << "kB";
  std::cout << seconds << " s, longest wait of another client " << 1000.0 * longestProbe_ << " ms, " << grown
            << " kB more memory, longest block " << report["us_per_block_max"] << " us\n";
}

}  // namespace
}  // namespace quorl::test
