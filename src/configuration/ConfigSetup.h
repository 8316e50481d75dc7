// What helps to choose, beside the fields of the configuration: the level of the input, the test tone, and
// the page of the first start.
#pragma once

#include <functional>
#include <vector>

#include "configuration/FirstStart.h"
#include "configuration/LevelPanel.h"
#include "configuration/frmConfig.h"

namespace quorl {

// All of it outlives the setup.
struct ConfigSetupLinks {
  SoundSystem& Sound;
  EventQueue& Queue;
  SerialPort& Ports;
  TuningChain& Chain;
  SettingsStore& Store;
  LevelLinks Level;
};

// The level is seen with its page. What the first start finds out is put into the fields, as if a hand had
// done it, for Apply to take.
class ConfigSetup {
 public:
  ConfigSetup(ControlRegistry& registry, frmConfig& config, ConfigSetupLinks links);

  LevelPanel Level;
  FirstStart First;
  Frame frSerialWiring;
  ControlArray<Label> lblSerialWiring;  // the heads, then a line for each wire

  // Opens the page of the first start, with what the fields hold.
  void Ask();
  // A block that the radio has captured.
  void NoteBlock(const std::int16_t* left, const std::int16_t* right, std::int32_t n);
  // The radio is about to open its devices.
  void LetGo();
  // The program ends, or the configuration closes: nothing of it is left open.
  void Close();

 private:
  void Follow();
  FirstStartAnswers Present() const;
  void Fill(const FirstStartAnswers& answers);

  frmConfig& config_;
  ConfigSetupLinks links_;
  std::vector<Listening> following_;
};

}  // namespace quorl
