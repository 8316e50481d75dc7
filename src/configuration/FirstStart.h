// The page of a first start: five questions, and the radio plays.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "config/SettingsTable.h"
#include "configuration/ComPorts.h"
#include "configuration/LevelPanel.h"
#include "controls/Controls.h"
#include "platform/SerialPort.h"
#include "platform/SoundSystem.h"
#include "tuning/TuningChain.h"

namespace quorl {

// What the page has found out.
struct FirstStartAnswers {
  static constexpr std::int32_t kNoBoard = -1;

  std::int32_t SDRModelNo = kNoBoard;
  std::int32_t IFType = InterfaceType::Serial;
  std::int32_t PortNo = 0;  // COM, from 1; 0 where there is none
  std::string PortPath;     // the device that this number is to lead to; empty where it does already
  std::uint16_t PortAddress = clsDDSParallelIF::kDefaultPortAddress;
  std::int32_t Capture = 0, Playback = 0;  // sound devices, from 1; 0 where there is none
  std::string CaptureName, PlaybackName;
};

// What the settings know about a board.
enum class KnownBoard { Unasked, Chosen, None, Later };
KnownBoard ReadKnownBoard(const SettingsStore& store);
// `None` and `Later` are remembered until another answer is stored.
void StoreKnownBoard(SettingsStore& store, KnownBoard board);
// Everything that a radio with these answers starts from; a clock that the board has been given before stays.
// Without a board only that there is none.
void StoreAnswers(SettingsStore& store, const FirstStartAnswers& answers);
// Those that `store` tells of: what a page that is shown again begins with.
FirstStartAnswers ReadAnswers(const SettingsStore& store);
// Hz, of the DDS on the board as it is built; and the section of the settings that its chip keeps it in.
std::int32_t BoardClock(std::int32_t SDRModelNo);
const char* ChipSection(std::int32_t SDRModelNo);
// Whether no clock is stored with which the board could be tuned; and its usual one for where that is so.
bool LacksClock(const SettingsStore& store, std::int32_t SDRModelNo);
void StoreClock(SettingsStore& store, std::int32_t SDRModelNo);

// Everything outlives the page.
struct FirstStartMachine {
  SoundSystem& Sound;
  SerialPort& Ports;
  std::function<const clsDDSSerialIF&()> Interface;  // knows which port a number leads to
  EventQueue& Queue;
};

// Works alone, before there is a receiver, and over one that plays.
class FirstStart {
 public:
  FirstStart(ControlRegistry& registry, FirstStartMachine machine, LevelLinks links = {});

  Frame Form;            // hidden while the page is closed
  OptionGroup optBoard;  // the models, then none
  Label lblBoard;        // what the chosen one is
  OptionGroup optIF;     // parallel, serial
  Label lblIF;
  ComboBox cboComPort;
  TextBox txtPortAddress;
  Label lblPort;
  ComboBox cboCapDevices;
  LevelPanel Level;
  ComboBox cboPlayDevices;
  CommandButton cmdRefresh, cmdStart, cmdSkip;

  // Shows the page, with the devices that there are and `answers` as far as they fit.
  void Open(const FirstStartAnswers& answers);
  bool IsOpen() const { return Form.Visible(); }
  void Close();
  // The page closes before either is told.
  std::function<void(const FirstStartAnswers& answers)> OnDone = [](const FirstStartAnswers&) {};
  std::function<void()> OnSkip = [] {};

 private:
  void NameControls();
  void Connect();
  void ListDevices(const FirstStartAnswers& answers);
  void ShowChoice();
  void ShowPort();
  bool HasBoard() const { return Model() >= 0; }
  std::int32_t Model() const;
  bool IsSerial() const { return optIF.Pressed() != 0; }
  FirstStartAnswers Answers() const;
  void cmdStart_Click();
  void cmdSkip_Click();

  FirstStartMachine machine_;
  ComPorts ports_;
  std::vector<int> portNumbers_;  // of cboComPort's items
};

}  // namespace quorl
