#include "sound/PulseServer.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

extern char** environ;

namespace quorl {

Child::Child(const std::vector<std::string>& command, const std::string& log) {
  std::vector<char*> arguments;
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  posix_spawn_file_actions_adddup2(&actions, 1, 2);
  if (posix_spawnp(&pid_, arguments[0], &actions, nullptr, arguments.data(), environ) != 0) pid_ = -1;
  posix_spawn_file_actions_destroy(&actions);
}

Child::~Child() {
  if (!Runs()) return;
  kill(pid_, SIGTERM);
  waitpid(pid_, &status_, 0);
}

bool Child::Runs() {
  if (pid_ > 0 && waitpid(pid_, &status_, WNOHANG) == pid_) pid_ = -1;
  return pid_ > 0;
}

void Child::Send(int signal) {
  if (Runs()) kill(pid_, signal);
}

int Child::Wait() {
  if (pid_ > 0) waitpid(pid_, &status_, 0);
  pid_ = -1;
  return WIFEXITED(status_) ? WEXITSTATUS(status_) : -1;
}

bool PulseServer::IsInstalled() {
  const char* path = std::getenv("PATH");
  for (const char* program : {"pulseaudio", "pactl", "pacat", "parec"}) {
    std::istringstream folders(path == nullptr ? "" : path);
    bool found = false;
    for (std::string folder; !found && std::getline(folders, folder, ':');) {
      found = access((folder + "/" + program).c_str(), X_OK) == 0;
    }
    if (!found) return false;
  }
  return true;
}

PulseServer::PulseServer() {
  std::string pattern = (std::filesystem::temp_directory_path() / "quorl-pulse-XXXXXX").string();
  directory_ = mkdtemp(pattern.data());
  const std::string socket = Path("socket");
  for (const char* name :
       {"HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "PULSE_RUNTIME_PATH", "PULSE_STATE_PATH"}) {
    setenv(name, directory_.c_str(), 1);
  }
  setenv("PULSE_SERVER", ("unix:" + socket).c_str(), 1);
  std::ofstream(Path("script")) << "load-module module-native-protocol-unix auth-anonymous=1 socket="
                                << socket << "\n"
                                << "load-module module-null-sink sink_name=antenna rate=48000 "
                                   "sink_properties=device.description=Antenna\n"
                                << "load-module module-null-sink sink_name=speaker rate=48000 "
                                << "sink_properties=\"device.description='Loud Speaker'\"\n";
  server_.emplace(
      std::vector<std::string>{"pulseaudio", "--daemonize=no", "--system=no", "--exit-idle-time=-1",
                               "--use-pid-file=no", "--disable-shm=yes", "-n", "-F", Path("script")},
      Path("log"));
}

PulseServer::~PulseServer() {
  Hang(false);
  server_.reset();
  std::filesystem::remove_all(directory_);
}

bool PulseServer::IsReady() {
  for (int i = 0; i < 50 && server_->Runs(); ++i) {
    if (Control({"info"}) == 0) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  return false;
}

void PulseServer::Hang(bool on) {
  server_->Send(on ? SIGSTOP : SIGCONT);
}

int PulseServer::Control(const std::vector<std::string>& arguments) const {
  std::vector<std::string> command = {"pactl"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return Child(command, Path("pactl")).Wait();
}

}  // namespace quorl
