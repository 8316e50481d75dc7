#include "sound/frmDX8Events.h"

#include "sound/QUORLDX8.h"

namespace quorl {

frmDX8Events::frmDX8Events(QUORLDX8& sound) : sound_(sound) {
  sound_.EventForm = this;
}

frmDX8Events::~frmDX8Events() {
  if (sound_.EventForm == this) sound_.EventForm = nullptr;
}

void frmDX8Events::DirectXEvent8_DXCallback(std::int32_t eventId) {
  sound_.EventHandler(eventId, SamplesI.data(), SamplesQ.data());
}

}  // namespace quorl
