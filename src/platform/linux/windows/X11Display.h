// An X display for as long as a question to it takes.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace quorl {

// Where there is no display, or it goes away, everything comes back empty.
class X11Display {
 public:
  X11Display();

  explicit operator bool() const;
  xcb_window_t Root() const { return root_; }
  // The number of a name that the display and its programs share.
  xcb_atom_t Atom(const std::string& name) const;
  std::vector<std::uint32_t> Numbers(xcb_window_t window, xcb_atom_t property, xcb_atom_t type) const;
  std::string Text(xcb_window_t window, xcb_atom_t property) const;
  std::vector<xcb_window_t> Children(xcb_window_t window) const;
  bool IsShown(xcb_window_t window) const;
  // A message of one number, to the window itself or to whoever manages the windows of the root.
  void Tell(xcb_window_t window, xcb_atom_t message, std::uint32_t number) const;
  void TellManager(xcb_window_t window, xcb_atom_t message, std::uint32_t number) const;
  // Takes the window off the screen and out of the manager's hands.
  void Withdraw(xcb_window_t window) const;

 private:
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  };
  void Send(xcb_window_t to, std::uint32_t mask, xcb_window_t about, xcb_atom_t message,
            std::uint32_t number) const;
  // Waits until all that was sent has been carried out.
  void Finish() const;

  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
  xcb_window_t root_ = 0;
};

}  // namespace quorl
