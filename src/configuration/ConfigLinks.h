// What the configuration window works on.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "config/ColourSchemes.h"
#include "config/SettingsStore.h"
#include "display/scope/ScopePanel.h"
#include "drm/HandOver.h"
#include "drm/modDream.h"
#include "interaction/PanelContext.h"
#include "platform/Dialogs.h"
#include "platform/EventQueue.h"
#include "platform/Files.h"
#include "platform/SerialPort.h"
#include "remote/RemoteServer.h"
#include "sound/QUORLDX8.h"
#include "tuning/TuningChain.h"
#include "tuning/TuningPanel.h"

namespace quorl {

// All of it outlives the window.
struct ConfigLinks {
  PanelContext& Panel;
  EventQueue& Queue;
  Dialogs& Boxes;
  SettingsStore& Store;
  SerialPort& Serial;
  Files& Storage;
  TuningChain& Chain;
  TuningPanel& Tuning;
  QUORLDX8& SoundCard;
  ScopePanel& Scope;
  ColourSchemes& Scheme;
  modDream& Dream;
  HandOver& Decoder;
  RemoteServer& Server;
  RemoteOptions& Remote;
  std::int32_t& InterfaceType;  // of the chain, and of the next start
  bool& AutoTrackPresets;
  bool& FormCaptionOffOnPwrOn;
  bool& AutoStartSDR;
  std::string Version = {}, ThemeFolder = {};

  // The power is being switched: nobody else works on the sound card meanwhile.
  std::function<bool()> IsSwitching = [] { return false; };
  // A recording of the band that plays gives the radio back to the antenna; it goes on by itself.
  std::function<void()> LeaveRecording = [] {};
  // Stores VFO, driver and interfaces, and makes those of another board in their place. The tuned frequency
  // stays.
  std::function<void(std::int32_t SDRModelNo, std::int32_t interfaceType)> ExchangeBoard =
      [](std::int32_t, std::int32_t) {};
  // Number of the device that plays but for a decoder's time, from 1.
  std::function<std::int32_t()> UsualPlaybackDevice = [] { return 1; };
  // The sound card's numbers, from 1. Opens them, and starts them where the radio plays; the former ones
  // where that fails, which has been told then.
  std::function<void(std::int32_t capture, std::int32_t playback)> ChangeDevices = [](std::int32_t,
                                                                                      std::int32_t) {};
  // The same for the next time that they are opened.
  std::function<void(std::int32_t capture, std::int32_t playback)> NoteDevices = [](std::int32_t,
                                                                                    std::int32_t) {};
  // The sound card is not the radio's at present.
  std::function<bool()> IsSoundCardLent = [] { return false; };
  std::function<void()> CaptionChanged = [] {};  // FormCaptionOffOnPwrOn
  std::function<void()> PaintPanel = [] {};      // ground and all colours; nothing active, no frame lit
  std::function<void()> SaveSettings = [] {};    // at once
  // Opens the calibration of the clock; `closed` is told when that ends, and whether there is a new clock.
  std::function<void(std::function<void(bool applied)> closed)> Calibrate =
      [](const std::function<void(bool)>&) {};
  std::function<void()> OpenFirstStart = [] {};
  std::function<void()> OpenGuide = [] {};
};

}  // namespace quorl
