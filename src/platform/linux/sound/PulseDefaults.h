// What PulseAudio's server tells of itself before anybody lists its devices.
#pragma once

namespace quorl {

// False where no server answers, and where one has no device yet to play to or to capture from: it then gives
// no name for the usual one, and RtAudio reads it all the same. Hangs where the server does.
bool HasPulseDefaults();

}  // namespace quorl
