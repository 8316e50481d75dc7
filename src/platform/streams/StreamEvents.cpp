#include "platform/streams/StreamEvents.h"

namespace quorl {

EventStream* StreamEvents::Oldest() {
  EventStream* oldest = nullptr;
  std::int64_t first = 0, time = 0;
  for (EventStream* stream : streams_) {
    if (stream->OldestTime(time) && (oldest == nullptr || time < first)) {
      oldest = stream;
      first = time;
    }
  }
  return oldest;
}

void StreamEvents::Deliver() {
  // A bounded count: an overloaded pump must not keep the thread from everything else.
  std::size_t count = 0;
  for (const EventStream* stream : streams_) count += stream->Pending();
  for (; count > 0; --count) {
    EventStream* stream = Oldest();
    if (stream == nullptr) return;
    stream->DeliverOldest();
  }
}

}  // namespace quorl
