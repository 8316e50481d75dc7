// Handlers and listeners, whatever they do to each other while they are told.
#include "controls/Event.h"

#include <gtest/gtest.h>

#include <string>

namespace quorl {
namespace {

TEST(Event, AListenerHearsBesideTheHandlerUntilItLeaves) {
  std::string notes;
  const auto note = [&notes](const char* who) { return [&notes, who] { notes += who; }; };
  Event<int> event;
  event = note("handler ");
  Listening self, first = event.Listen(note("first "));
  {
    const Listening second = event.Listen([&](int value) {
      notes += "second" + std::to_string(value) + " ";
      self = event.Listen(note("new"));  // while the others are being told
    });
    event(7);
    EXPECT_EQ(notes, "handler first second7 new");
  }
  first.reset();
  notes.clear();
  event(7);
  EXPECT_EQ(notes, "handler new");
  self = event.Listen([&self] { self.reset(); });  // leaves while it is being told
  event(7);
  EXPECT_TRUE(event);
  event = nullptr;
  EXPECT_FALSE(event) << "who only listens doesn't handle it";
}

TEST(Event, AHandlerThatPutsAnotherInItsPlaceEndsInPeace) {
  Event<> event;
  auto kept = std::make_shared<int>(1);
  const std::weak_ptr<int> watched = kept;
  bool lived = false;
  int second = 0;
  event = [kept = std::move(kept), &event, &watched, &lived, &second] {
    bool& stillThere = lived;
    const std::weak_ptr<int>& own = watched;
    event = [&second] { ++second; };
    stillThere = !own.expired();
  };
  event();
  EXPECT_TRUE(lived) << "what it holds lasts as long as it runs";
  event();
  EXPECT_EQ(second, 1);
  EXPECT_TRUE(watched.expired());
}

}  // namespace
}  // namespace quorl
