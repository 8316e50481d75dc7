#include "platform/linux/windows/X11Windows.h"

#include <unistd.h>

#include <algorithm>
#include <array>

#include "platform/linux/windows/X11Display.h"

namespace quorl {

namespace {

constexpr std::chrono::milliseconds kInterval{200};
constexpr int kMostLooks = 50;  // a decoder shows itself within ten seconds
constexpr xcb_window_t kNoWindow = XCB_WINDOW_NONE;
constexpr std::uint32_t kMinimised = 3;  // a window's state in the conventions

std::string ThisMachine() {
  std::array<char, 256> name{};
  return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

// Whose window is whose, as the display is now.
class WindowSearch {
 public:
  explicit WindowSearch(const X11Display& display)
      : display_(display),
        pid_(display.Atom("_NET_WM_PID")),
        protocols_(display.Atom("WM_PROTOCOLS")),
        close_(display.Atom("WM_DELETE_WINDOW")),
        machine_(ThisMachine()) {}

  // Those that the window manager lists; without one, those that stand on the root or in a frame there.
  xcb_window_t Find(int process) const {
    const auto listed = display_.Numbers(display_.Root(), display_.Atom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW);
    if (const xcb_window_t found = FirstOf(listed, process)) return found;
    const auto onRoot = display_.Children(display_.Root());
    if (const xcb_window_t found = FirstOf(onRoot, process)) return found;
    for (const xcb_window_t frame : onRoot) {
      if (const xcb_window_t found = FirstOf(display_.Children(frame), process)) return found;
    }
    return kNoWindow;
  }

 private:
  xcb_window_t FirstOf(const std::vector<xcb_window_t>& windows, int process) const {
    const auto found = std::find_if(windows.begin(), windows.end(),
                                    [&](xcb_window_t window) { return IsOf(window, process); });
    return found == windows.end() ? kNoWindow : *found;
  }

  // Another machine's program may show its windows here, and has process numbers of its own.
  bool IsOf(xcb_window_t window, int process) const {
    const auto owner = display_.Numbers(window, pid_, XCB_ATOM_CARDINAL);
    if (owner.empty() || owner[0] != static_cast<std::uint32_t>(process)) return false;
    const std::string machine = display_.Text(window, XCB_ATOM_WM_CLIENT_MACHINE);
    if (!machine.empty() && machine != machine_) return false;
    const auto understood = display_.Numbers(window, protocols_, XCB_ATOM_ATOM);
    return std::find(understood.begin(), understood.end(), close_) != understood.end();
  }

  const X11Display& display_;
  xcb_atom_t pid_, protocols_, close_;
  std::string machine_;
};

}  // namespace

X11Windows::X11Windows(EventQueue& queue) : looking_(queue.CreateTimer([this] { Look(); })) {}

// A start that no gesture stands behind, at time 0, takes nobody's keyboard away.
std::vector<std::string> X11Windows::Environment(WindowWish wish) const {
  if (wish == WindowWish::Focused) return {};
  return {"DESKTOP_STARTUP_ID=quorlsdr-" + std::to_string(getpid()) + "_TIME0"};
}

Processes::WindowNumber X11Windows::Find(int process) {
  const X11Display display;
  return display ? WindowSearch(display).Find(process) : kNoWindow;
}

void X11Windows::Close(Processes::WindowNumber window) {
  const X11Display display;
  if (display) display.Tell(window, display.Atom("WM_PROTOCOLS"), display.Atom("WM_DELETE_WINDOW"));
}

void X11Windows::Wish(int process, WindowWish wish) {
  process_ = process;
  wish_ = wish;
  looks_ = 0;
  looking_->Stop();
  if (wish == WindowWish::MinimisedBehind || wish == WindowWish::Hidden) looking_->Start(kInterval);
}

void X11Windows::Forget(int process) {
  if (process == process_) looking_->Stop();
}

void X11Windows::Look() {
  const X11Display display;
  const xcb_window_t window = display ? WindowSearch(display).Find(process_) : kNoWindow;
  const bool shown = window != kNoWindow && display.IsShown(window);
  if (shown && wish_ == WindowWish::Hidden) {
    display.Withdraw(window);
  } else if (shown) {
    display.TellManager(window, display.Atom("WM_CHANGE_STATE"), kMinimised);
  }
  if (shown || !display || ++looks_ >= kMostLooks) looking_->Stop();
}

}  // namespace quorl
