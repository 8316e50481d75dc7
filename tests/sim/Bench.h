// A board on a desk: the real driver classes on virtual ports, the simulated board at the cable's far end.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <utility>

#include "rigs/VirtualDesk.h"
#include "sim/SimulatedReceiver.h"
#include "tuning/TuningChain.h"

namespace quorl {

struct Bench : test::VirtualDesk {
  Bench(int model, std::int32_t interfaceType, std::unique_ptr<SimulatedBand> band, bool lowSide)
      : Board(model, std::move(band), SettingsOf(model, lowSide)) {
    Listen(Board.Cable(), false);
    Store.SaveSetting("DDSAD9951", "ClkIn", "360096000");
    Chain.emplace(TuningMachine{Serial, Printer, Queue, Boxes, Store}, SettingsStore::LogSink{});
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

  SettingsStore Store;
  SimulatedReceiver Board;
  std::optional<TuningChain> Chain;
};

}  // namespace quorl
