// A board on a desk: the real driver classes on virtual ports, the simulated board at the cable's far end.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <utility>

#include "platform/virtual/VirtualDialogs.h"
#include "platform/virtual/VirtualEventQueue.h"
#include "platform/virtual/VirtualPrinterPort.h"
#include "platform/virtual/VirtualSerialPort.h"
#include "sim/SimulatedReceiver.h"
#include "tuning/TuningChain.h"

namespace quorl {

struct Bench {
  Bench(int model, std::int32_t interfaceType, std::unique_ptr<SimulatedBand> band, bool lowSide)
      : Board(model, std::move(band), SettingsOf(model, lowSide)) {
    Serial.SetRecording(false);
    Printer.SetRecording(false);
    Serial.SetListener(&Board.Cable());
    Printer.SetListener(&Board.Cable());
    Store.SaveSetting("DDSAD9951", "ClkIn", "360096000");
    Chain.emplace(TuningMachine{Serial, Printer, Events, Boxes, Store}, SettingsStore::LogSink{});
    EXPECT_TRUE(Chain->OpenInterface(interfaceType, false));
    Chain->CreateVFO(model, interfaceType);
    Chain->VFO()->HiSideLO = !lowSide;
  }
  void Tune(std::int32_t dHz) { ASSERT_FALSE(Chain->VFO()->SetTunedFrequency(dHz)); }

  static BoardSettings SettingsOf(int model, bool lowSide) {
    BoardSettings settings = BoardOfModel(model);
    settings.LowSideInjection = lowSide;
    return settings;
  }

  VirtualClock Clock;
  VirtualEventQueue Events{Clock};
  VirtualDialogs Boxes;
  VirtualSerialPort Serial{Clock, Events};
  VirtualPrinterPort Printer{Clock};
  SettingsStore Store;
  SimulatedReceiver Board;
  std::optional<TuningChain> Chain;
};

}  // namespace quorl
