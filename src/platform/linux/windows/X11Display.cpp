#include "platform/linux/windows/X11Display.h"

#include <algorithm>
#include <cstdlib>

namespace quorl {

namespace {

struct Release {
  void operator()(void* memory) const { std::free(memory); }
};
template <typename Reply>
std::unique_ptr<Reply, Release> Owned(Reply* reply) {
  return std::unique_ptr<Reply, Release>(reply);
}

constexpr std::uint32_t kManagersMask =
    XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT;
constexpr std::uint32_t kMostWords = 4096;  // of a property

}  // namespace

X11Display::X11Display() {
  int screen = 0;
  connection_.reset(xcb_connect(nullptr, &screen));
  if (xcb_connection_has_error(connection_.get()) != 0) return;
  xcb_screen_iterator_t each = xcb_setup_roots_iterator(xcb_get_setup(connection_.get()));
  for (; screen > 0 && each.rem > 1; --screen) xcb_screen_next(&each);
  if (each.rem > 0) root_ = each.data->root;
}

X11Display::operator bool() const {
  return root_ != 0 && xcb_connection_has_error(connection_.get()) == 0;
}

xcb_atom_t X11Display::Atom(const std::string& name) const {
  const auto cookie =
      xcb_intern_atom(connection_.get(), 0, static_cast<std::uint16_t>(name.size()), name.data());
  const auto reply = Owned(xcb_intern_atom_reply(connection_.get(), cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

std::vector<std::uint32_t> X11Display::Numbers(xcb_window_t window, xcb_atom_t property,
                                               xcb_atom_t type) const {
  const auto cookie = xcb_get_property(connection_.get(), 0, window, property, type, 0, kMostWords);
  const auto reply = Owned(xcb_get_property_reply(connection_.get(), cookie, nullptr));
  if (!reply || reply->format != 32) return {};
  const auto* words = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {words, words + reply->value_len};
}

std::string X11Display::Text(xcb_window_t window, xcb_atom_t property) const {
  const auto cookie =
      xcb_get_property(connection_.get(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, kMostWords);
  const auto reply = Owned(xcb_get_property_reply(connection_.get(), cookie, nullptr));
  if (!reply || reply->format != 8) return {};
  const auto* text = static_cast<const char*>(xcb_get_property_value(reply.get()));
  return {text, text + reply->value_len};
}

std::vector<xcb_window_t> X11Display::Children(xcb_window_t window) const {
  const auto reply =
      Owned(xcb_query_tree_reply(connection_.get(), xcb_query_tree(connection_.get(), window), nullptr));
  if (!reply) return {};
  const xcb_window_t* children = xcb_query_tree_children(reply.get());
  return {children, children + xcb_query_tree_children_length(reply.get())};
}

bool X11Display::IsShown(xcb_window_t window) const {
  const auto reply = Owned(xcb_get_window_attributes_reply(
      connection_.get(), xcb_get_window_attributes(connection_.get(), window), nullptr));
  return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

void X11Display::Send(xcb_window_t to, std::uint32_t mask, xcb_window_t about, xcb_atom_t message,
                      std::uint32_t number) const {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = about;
  event.type = message;
  event.data.data32[0] = number;
  event.data.data32[1] = XCB_CURRENT_TIME;
  xcb_send_event(connection_.get(), 0, to, mask, reinterpret_cast<const char*>(&event));
  Finish();
}

void X11Display::Tell(xcb_window_t window, xcb_atom_t message, std::uint32_t number) const {
  Send(window, XCB_EVENT_MASK_NO_EVENT, window, message, number);
}

void X11Display::TellManager(xcb_window_t window, xcb_atom_t message, std::uint32_t number) const {
  Send(root_, kManagersMask, window, message, number);
}

void X11Display::Withdraw(xcb_window_t window) const {
  xcb_unmap_window(connection_.get(), window);
  // A window that is minimised already is told of by this alone.
  xcb_unmap_notify_event_t event{};
  event.response_type = XCB_UNMAP_NOTIFY;
  event.event = root_;
  event.window = window;
  char sent[32] = {};  // every event is as long
  static_assert(sizeof event <= sizeof sent);
  std::copy_n(reinterpret_cast<const char*>(&event), sizeof event, sent);
  xcb_send_event(connection_.get(), 0, root_, kManagersMask, sent);
  Finish();
}

void X11Display::Finish() const {
  Owned(xcb_get_input_focus_reply(connection_.get(), xcb_get_input_focus(connection_.get()), nullptr));
}

}  // namespace quorl
