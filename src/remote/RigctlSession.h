// One client's conversation in the Hamlib network protocol: bytes in, answers out. No socket is known here.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "remote/RemoteRadio.h"

namespace quorl {

// Commands come in lines, several of them in one line where the client likes, and lines in whatever pieces
// the network makes of them. What is answered doesn't depend on the pieces.
class RigctlSession {
 public:
  static constexpr std::size_t kLongestLine = 1024;   // bytes without the line feed
  static constexpr std::size_t kMostWaiting = 65536;  // bytes of answers that a client leaves unread
  static constexpr int kCommandsPerTurn = 16;

  // The radio outlives the session.
  explicit RigctlSession(RemoteRadio& radio) : radio_(radio) {}

  // Carries out the commands at the front of `bytes`, which are all that have come and weren't taken yet, and
  // appends what they answer to `answers`, all that the client hasn't been sent yet: never beyond
  // kMostWaiting bytes, and no more than kCommandsPerTurn of them, so that one client leaves room for the
  // others. Returns how many bytes were taken; those of a line that hasn't ended stay, unless the line is too
  // long. Call it again while it takes any.
  // A command may deliver other events before it returns: the session and both arguments have to live until
  // then. Called meanwhile, it takes nothing.
  std::size_t Take(std::string_view bytes, std::string& answers);
  // The client has said that it goes, or sent what is no line of this protocol: when it has been sent what
  // waits, its connection is to be closed.
  bool Ended() const { return ended_; }

 private:
  std::size_t TakeCommand(std::string_view rest, std::string& answers);

  RemoteRadio& radio_;
  bool ended_ = false;
  bool working_ = false;
};

}  // namespace quorl
