// The built quorlsdr-cli's `listen` over a band of steady tones, so that what is heard can be measured.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "cli/CliRunner.h"

namespace quorl::test {

inline constexpr const char* kStations = R"([band]
seed = 3
noise_dbm_hz = -152
[station Broadcaster]
frequency_khz = 7205
mode = am
level_dbm = -58
programme = tone 700 60
[station Upper voice]
frequency_khz = 7050
mode = usb
level_dbm = -58
programme = tone 1200 60
[station Lower voice]
frequency_khz = 7090
mode = lsb
level_dbm = -58
programme = tone 900 60
)";

class ListenTest : public CliTest {
 protected:
  // No sound server is asked, and the user's directories are the test's own.
  static constexpr const char* kAlone =
      "export XDG_CONFIG_HOME=\"$PWD/config\" XDG_STATE_HOME=\"$PWD/state\" PULSE_SERVER=unix:/nowhere;";

  ListenTest() {
    std::filesystem::create_directory(Path("band"));
    Put("band/stations.ini", kStations);
  }
  CliResult Listen(const std::string& arguments) const { return Cli("listen " + arguments, kAlone); }

  // The audio of a second and a half, without the second in which the filters fill and the AGC settles.
  std::vector<std::int16_t> Hear(const std::string& arguments, const std::string& band = "--folder band") {
    const CliResult result = Listen("--demo --output a.wav --seconds 2.5 " + band + " " + arguments);
    EXPECT_EQ(result.ExitCode, 0) << result.Errors;
    std::vector<std::int16_t> audio = GetWav("a.wav");
    EXPECT_GE(audio.size(), 120000U);
    audio.erase(audio.begin(), audio.begin() + 48000);
    return audio;
  }
};

}  // namespace quorl::test
