// Makes the transmitter that a line of the stations file asks for.
#pragma once

#include <memory>

#include "sim/Programme.h"
#include "sim/SimulatedBand.h"

namespace quorl {

// `seed` makes this station's own melody, data and noise. Null with `failure` set where a clip is missing or
// an FM programme is longer than a minute.
std::unique_ptr<Programme> MakeProgramme(const StationDefinition& station, const std::string& fileName,
                                         const SpeechClips& clips, std::uint64_t seed, Failure& failure);

}  // namespace quorl
