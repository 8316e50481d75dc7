// What `listen` was asked for.
#pragma once

#include <optional>
#include <string>

#include "ListenRecorder.h"
#include "ListenTimes.h"
#include "ReceiveOptions.h"
#include "platform/SocketPlace.h"

namespace quorl::cli {

struct ListenOptions {
  ReceiveOptions Reception;
  std::optional<std::int32_t> FrequencyDhz;  // else the one of the last time
  bool Demo = false;
  std::string Antenna;  // recording that takes the antenna's place, in the demo
  std::string Capture;  // name or number
  std::string Playback;
  ListenFiles Files;
  std::optional<Moment> Start, End;   // of what is recorded
  double Seconds = 0.0;               // 0 listens until it is stopped
  std::optional<SocketPlace> Remote;  // where clients may connect that steer the radio
  double BoardErrorPpm = 0.0;
  std::string Settings;  // path of the settings file
  std::string Folder;    // of demo data
  bool Quiet = false;    // no live line
  bool ShortDelay = false;
};

}  // namespace quorl::cli
