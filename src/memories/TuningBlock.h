// The keys of a TuningSettings block, as a plan's file holds them.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "memories/BandPlan.h"
#include "profile/clsINIFile.h"

namespace quorl {

// The keys of one section. A text that isn't what its key needs ends the block: the fields behind it stay
// what they were. Frequencies whose tenfold leaves 32 bits are no frequencies.
// Returns the key that ended the block; empty where all is well.
std::string LoadTuningSettings(const clsINIFile& file, std::string_view section, TuningSettings& block);

using PutKey = std::function<void(std::string_view key, const std::string& value)>;
// Nothing of a block that has not been captured.
void SaveTuningSettings(const TuningSettings& block, const PutKey& put);

// The keys of a block, in the order of reading; and whether one is among them, in any case.
std::vector<std::string> TuningKeys();
bool IsTuningKey(std::string_view key);

// A frequency in hertz, which the radio can hold in dHz.
std::optional<std::int32_t> ParseHertz(std::string_view text);

}  // namespace quorl
