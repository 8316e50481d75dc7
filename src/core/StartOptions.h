// What a start of the program is told from outside.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "config/SettingsStore.h"

namespace quorl {

struct StartOptions {
  std::string CommandLine;        // "trace" anywhere in it shows the log from the first step
  std::string ApplicationFolder;  // band plans and a recording in progress live here
  // Puts into the store, once it has been read, what it lacks for this run. May be empty.
  std::function<void(SettingsStore&)> Defaults = {};
  std::string SoundFolder = {};  // where files are sought that a user records and plays
  std::string Version = {};      // of the program
  // Told the number of the board, before its chip is set up. May be empty.
  std::function<void(std::int32_t SDRModelNo)> OnBoard = {};
};

}  // namespace quorl
