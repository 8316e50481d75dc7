// Windows of other programs, on a display of this test's own.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <string>

#include "platform/ScratchDirectory.h"
#include "platform/linux/system/LinuxEventQueue.h"
#include "platform/linux/system/LinuxProcesses.h"
#include "platform/linux/windows/X11Display.h"
#include "platform/linux/windows/X11Windows.h"

namespace quorl {
namespace {

constexpr int kClosed = 42;  // how a program ends whose window was asked to close

// A program that shows one window and waits for its close button.
[[noreturn]] void ShowWindow(bool understandsClose) {
  xcb_connection_t* display = xcb_connect(nullptr, nullptr);
  const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(display)).data;
  const xcb_window_t window = xcb_generate_id(display);
  xcb_create_window(display, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 50, 50, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
  const X11Display names;
  const xcb_atom_t protocols = names.Atom("WM_PROTOCOLS"), close = names.Atom("WM_DELETE_WINDOW");
  const auto process = static_cast<std::uint32_t>(getpid());
  xcb_change_property(display, XCB_PROP_MODE_REPLACE, window, names.Atom("_NET_WM_PID"), XCB_ATOM_CARDINAL,
                      32, 1, &process);
  if (understandsClose)
    xcb_change_property(display, XCB_PROP_MODE_REPLACE, window, protocols, XCB_ATOM_ATOM, 32, 1, &close);
  xcb_map_window(display, window);
  xcb_flush(display);
  while (xcb_generic_event_t* event = xcb_wait_for_event(display)) {
    if ((event->response_type & 0x7F) != XCB_CLIENT_MESSAGE) continue;
    const auto* message = reinterpret_cast<xcb_client_message_event_t*>(event);
    if (message->type == protocols && message->data.data32[0] == close) _exit(kClosed);
  }
  _exit(1);
}

struct X11WindowsTest : testing::Test {
  X11WindowsTest() {
    int ends[2];
    if (pipe(ends) != 0) return;
    server_ = fork();
    if (server_ == 0) {
      close(ends[0]);
      execlp("Xvfb", "Xvfb", "-displayfd", std::to_string(ends[1]).c_str(), "-screen", "0", "640x480x24",
             "-nolisten", "tcp", "-noreset", nullptr);
      _exit(127);
    }
    close(ends[1]);
    std::string number;
    for (char c = 0; read(ends[0], &c, 1) == 1 && c != '\n';) number += c;
    close(ends[0]);
    setenv("DISPLAY", (":" + number).c_str(), 1);
  }
  ~X11WindowsTest() override {
    for (const pid_t each : children_) kill(each, SIGKILL);
    if (server_ > 0) kill(server_, SIGTERM);
    while (waitpid(-1, nullptr, 0) > 0) continue;
  }
  int Show(bool understandsClose = true) {
    const pid_t child = fork();
    if (child == 0) ShowWindow(understandsClose);
    children_.push_back(child);
    return child;
  }
  bool Eventually(const std::function<bool()>& holds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!holds() && std::chrono::steady_clock::now() < end) Queue.Wait(std::chrono::milliseconds(2));
    return holds();
  }
  bool WasClosed(int child) {
    siginfo_t end{};
    waitid(P_PID, static_cast<id_t>(child), &end, WEXITED | WNOHANG | WNOWAIT);
    return end.si_code == CLD_EXITED && end.si_status == kClosed;
  }

  LinuxEventQueue Queue;
  X11Windows Windows{Queue};

 private:
  pid_t server_ = -1;
  std::vector<pid_t> children_;
};

TEST_F(X11WindowsTest, TheWindowOfOneProgramIsAskedToClose) {
  const int ours = Show(), other = Show(), deaf = Show(false);
  ASSERT_TRUE(Eventually([&] { return Windows.Find(ours) != 0 && Windows.Find(other) != 0; }));
  EXPECT_NE(Windows.Find(ours), Windows.Find(other));
  EXPECT_EQ(Windows.Find(deaf), 0U);
  EXPECT_EQ(Windows.Find(getpid()), 0U);
  Windows.Close(Windows.Find(ours));
  EXPECT_TRUE(Eventually([&] { return WasClosed(ours); }));
  EXPECT_NE(Windows.Find(other), 0U);
  // A program that was not started by it has no window for the list of programs.
  LinuxProcesses programs(&Queue, &Windows);
  EXPECT_EQ(programs.FindWindow(other), 0U);
}

// The test is the window manager.
TEST_F(X11WindowsTest, AWindowIsMinimisedOrHiddenWhenItComesUp) {
  xcb_connection_t* manager = xcb_connect(nullptr, nullptr);
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(manager)).data->root;
  const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  xcb_change_window_attributes(manager, root, XCB_CW_EVENT_MASK, &mask);
  xcb_flush(manager);
  const X11Display display;
  int minimised = 0, withdrawn = 0;
  const auto manage = [&] {
    while (xcb_generic_event_t* event = xcb_poll_for_event(manager)) {
      const int kind = event->response_type & 0x7F;
      if (kind == XCB_MAP_REQUEST) {
        xcb_map_window(manager, reinterpret_cast<xcb_map_request_event_t*>(event)->window);
        xcb_flush(manager);
      }
      const auto* message = reinterpret_cast<xcb_client_message_event_t*>(event);
      minimised += kind == XCB_CLIENT_MESSAGE && message->type == display.Atom("WM_CHANGE_STATE") &&
                   message->data.data32[0] == 3;
      withdrawn += kind == XCB_UNMAP_NOTIFY && (event->response_type & 0x80) != 0;
      std::free(event);
    }
  };
  const int first = Show();
  Windows.Wish(first, WindowWish::MinimisedBehind);
  EXPECT_TRUE(Eventually([&] {
    manage();
    return minimised == 1;
  }));
  const int second = Show();
  Windows.Wish(second, WindowWish::Hidden);
  EXPECT_TRUE(Eventually([&] {
    manage();
    return withdrawn == 1;
  }));
  EXPECT_FALSE(display.IsShown(Windows.Find(second)));
  Windows.Close(Windows.Find(second));
  EXPECT_TRUE(Eventually([&] { return WasClosed(second); })) << "closed, hidden as it is";
  // What has ended is not waited for: its number may be anybody's next.
  const int third = Show();
  Windows.Wish(third, WindowWish::Hidden);
  Windows.Forget(third);
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(500);
  while (std::chrono::steady_clock::now() < end) {
    manage();
    Queue.Wait(std::chrono::milliseconds(5));
  }
  EXPECT_EQ(withdrawn, 1);
  EXPECT_TRUE(display.IsShown(Windows.Find(third)));
  EXPECT_EQ(minimised, 1);
  xcb_disconnect(manager);
}

TEST(X11Windows, WithoutADisplayThereIsNothing) {
  unsetenv("DISPLAY");
  LinuxEventQueue queue;
  X11Windows windows(queue);
  EXPECT_EQ(windows.Find(getpid()), 0U);
  windows.Close(1);
  EXPECT_TRUE(windows.Environment(WindowWish::Focused).empty());
  EXPECT_TRUE(windows.Environment(WindowWish::Behind).at(0).ends_with("_TIME0"));
}

}  // namespace
}  // namespace quorl
