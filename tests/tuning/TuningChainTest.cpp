#include "tuning/TuningChain.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>

#include "TuningRig.h"
#include "sim/ChipWiring.h"
#include "sim/SimulatedAD9835.h"
#include "sim/SimulatedAD9951.h"

namespace quorl {
namespace {

class Chain : public ::testing::Test, protected TuningRig {
 protected:
  std::unique_ptr<TuningChain> Build(std::int32_t model, std::int32_t interfaceType) {
    auto chain = std::make_unique<TuningChain>(TuningMachine{Serial, Printer, Queue, Boxes, Settings},
                                               [this](const std::string& line) { log.push_back(line); });
    chain->OpenInterface(interfaceType, false);
    chain->CreateVFO(model, interfaceType);
    return chain;
  }
  std::vector<std::string> log;
};

// From the bytes on the wire, framed by the tap, to the tuning word.
std::uint32_t WordOf(const std::vector<WireTap::Frame>& frames) {
  const auto byte = [&](std::size_t frame, std::size_t index) {
    return static_cast<std::uint32_t>(frames.at(frame).at(index));
  };
  if (frames.back().size() == 5) return byte(0, 1) << 24 | byte(0, 2) << 16 | byte(0, 3) << 8 | byte(0, 4);
  return byte(4, 1) << 24 | byte(3, 1) << 16 | byte(2, 1) << 8 | byte(1, 1);
}

TEST_F(Chain, TwoHundredFrequenciesReachEveryChipToTheLastBit) {
  struct {
    std::int32_t Model, Interface;
    double IF, Clock, Lowest, Highest;  // Hz
  } const boards[] = {{0, InterfaceType::Serial, 45e6, 360096000, 0, 134e6},
                      {1, InterfaceType::Serial, 455e3, 50e6, 0, 24.5e6},
                      {1, InterfaceType::Parallel, 455e3, 50e6, 0, 24.5e6},
                      {2, InterfaceType::Serial, 45e6, 360096000, 0, 134e6},
                      {3, InterfaceType::Serial, 45e6, 360096000, 0, 134e6}};
  Settings.SaveSetting("DDSAD9951", "ClkIn", "360096000");
  std::mt19937 random(4);
  for (const auto& board : boards) {
    std::unique_ptr<SimulatedChip> simulated;
    if (board.Model == 1) {
      simulated = std::make_unique<SimulatedAD9835>(board.Clock);
    } else {
      simulated = std::make_unique<SimulatedAD9951>(board.Clock / 8);
    }
    ChipWiring wiring(*simulated);
    Serial.SetListener(&wiring);
    Printer.SetListener(&wiring);
    const auto chain = Build(board.Model, board.Interface);
    chain->ParallelIF().IOUPD(1);
    clsVFO& vfo = *chain->VFO();
    std::uniform_int_distribution<std::int32_t> frequency(static_cast<std::int32_t>(board.Lowest * 10),
                                                          static_cast<std::int32_t>(board.Highest * 10));
    for (int i = 0; i < 200; ++i) {
      vfo.HiSideLO = i % 2 == 0;
      const std::int32_t tuned = frequency(random);
      const double oscillator = std::abs(tuned + (vfo.HiSideLO ? 10 : -10) * board.IF);  // dHz
      const auto word = static_cast<std::uint32_t>(
          std::llrintl(static_cast<long double>(oscillator) * 4294967296.0L / (10.0L * board.Clock)));

      // The same frequency twice: once into the chip, once read off the wire.
      Serial.SetListener(&wiring);
      Printer.SetListener(&wiring);
      ASSERT_FALSE(vfo.SetTunedFrequency(tuned));
      ASSERT_EQ(vfo.OscOut, oscillator);
      ASSERT_EQ(simulated->TuningWord(), word) << "model " << board.Model << ", " << tuned << " dHz";
      Serial.SetListener(&Wire);
      Printer.SetListener(&Wire);
      Sent();
      vfo.Refresh();
      ASSERT_EQ(WordOf(Sent()), word) << "model " << board.Model << ", " << tuned << " dHz";
    }
  }
  EXPECT_TRUE(log.empty());
  EXPECT_TRUE(Boxes.Messages.empty());
}

TEST_F(Chain, BoardsStartWithTheirConfigurations) {
  struct {
    std::int32_t Model;
    const char *VFOName, *DriverName;
    std::int32_t IF;
    bool AutoUpdate;
  } const boards[] = {{0, "VFO1.DRT1", "DDSAD9951", 45000000, true},
                      {1, "VFO1.ElektorDRM", "DDSAD9835", 455000, false},
                      {2, "VFO1.RXIQ", "DDSAD9951", 45000000, true},
                      {9, "VFO1.RXIQ", "DDSAD9951", 45000000, true}};
  for (const auto& board : boards) {
    SettingsStore fresh;
    TuningChain chain({Serial, Printer, Queue, Boxes, fresh}, {});
    chain.OpenInterface(InterfaceType::Serial, false);
    chain.CreateVFO(board.Model, InterfaceType::Serial);
    EXPECT_EQ(chain.VFO()->Name, board.VFOName);
    EXPECT_EQ(chain.Driver()->Name, board.DriverName);
    EXPECT_EQ(chain.VFO()->IFFrequency(), board.IF);
    EXPECT_EQ(chain.VFO()->AutoUpdate, board.AutoUpdate);
    EXPECT_TRUE(chain.VFO()->HiSideLO);
    EXPECT_EQ(chain.VFO()->TuneStep(), 1000);
    EXPECT_EQ(chain.VFO()->TuneStepLSD(), 1000);
  }
}

TEST_F(Chain, EverythingThatIsSavedComesBack) {
  Settings.SaveSetting("DDSAD9951", "ClkIn", "360096000");
  {
    const auto chain = Build(0, InterfaceType::Serial);
    chain->VFO()->SetTunedFrequency(70500000);
    chain->Driver()->SetClkIn(360096100);
    chain->SerialIF().PortNo = 2;
    chain->Save();
  }
  EXPECT_FALSE(Serial.IsOpen());
  const auto chain = Build(0, InterfaceType::Serial);
  EXPECT_EQ(chain->VFO()->TunedFrequency(), 70500000);
  EXPECT_EQ(chain->Driver()->ClkIn(), 360096100);
  EXPECT_EQ(Serial.OpenedDevices().back(), "/dev/ttyS1");
}

// What a dialog has stored is for the chain that is built next, not for the old one to write over.
TEST_F(Chain, AChainThatIsRebuiltLeavesTheStoreAlone) {
  auto chain = Build(0, InterfaceType::Serial);
  Settings.SaveSetting("DDSAD9951", "ClkIn", "400000000");
  Settings.SaveSetting("DDSSerialIF", "PortNo", "4");
  chain.reset();
  chain = Build(0, InterfaceType::Serial);
  EXPECT_EQ(Settings.GetSetting("DDSAD9951", "ClkIn", ""), "400000000");
  EXPECT_EQ(Settings.GetSetting("DDSSerialIF", "PortNo", ""), "4");
  EXPECT_EQ(chain->Driver()->ClkIn(), 400000000);
  EXPECT_EQ(Serial.OpenedDevices().back(), "/dev/ttyS3");
}

TEST_F(Chain, AClockThatIsNoneGivesWayToTheUsualOneWithOneLine) {
  for (const std::int32_t model : {0, 1}) {
    for (const char* text : {"rubbish", "0", "-50000000", "429496730", "1e300"}) {
      Settings.SaveSetting(model == 0 ? "DDSAD9951" : "DDSAD9835", "ClkIn", text);
      Settings.SaveSetting("VFO1.DRT1", "IFFrequency", "12000000");
      log.clear();
      const auto chain = Build(model, InterfaceType::Serial);
      EXPECT_EQ(chain->Driver()->ClkIn(), 50000000) << text;
      ASSERT_EQ(log.size(), 1U) << text;
      EXPECT_NE(log[0].find(std::string("ClkIn '") + text + "'"), std::string::npos) << log[0];
      Sent();
      EXPECT_FALSE(chain->VFO()->SetTunedFrequency(70500000));
      EXPECT_FALSE(Sent().empty());
    }
  }
  EXPECT_TRUE(Boxes.Messages.empty());
}

TEST_F(Chain, WhatCannotWorkIsToldInOneLine) {
  EXPECT_TRUE(Build(0, InterfaceType::Serial)->Fault());
  ASSERT_EQ(log.size(), 1U);
  EXPECT_EQ(
      log[0],
      "DDSAD9951: a clock of 50000000 Hz is too low for this board, half of it must lie above the IF of "
      "45000000 Hz - set the board's DDS clock in the configuration, or as ClkIn in section [DDSAD9951] "
      "of the settings file");
  log.clear();
  Settings.SaveSetting("DDSAD9951", "ClkIn", "360096000");
  Serial.ClearLevels();
  const auto chain = Build(2, InterfaceType::Parallel);
  EXPECT_FALSE(chain->VFO()->SetTunedFrequency(70500000));
  ASSERT_EQ(log.size(), 1U);
  EXPECT_NE(log[0].find("only be tuned over the serial interface"), std::string::npos);
  EXPECT_TRUE(Serial.Levels().empty());
  EXPECT_TRUE(Printer.Levels().empty());
  EXPECT_TRUE(Boxes.Messages.empty());
}

TEST_F(Chain, AMissingPortOrAnUnknownTypeStillLeavesATunableVFO) {
  Serial.FailOpen(Error{2, "none"});
  EXPECT_FALSE(Build(1, InterfaceType::Serial)->VFO()->SetTunedFrequency(70500000));
  ASSERT_EQ(Boxes.Messages.size(), 1U);
  EXPECT_EQ(log, std::vector<std::string>{"COM1: none"});
  const auto chain = Build(1, 2);
  EXPECT_FALSE(chain->VFO()->SetTunedFrequency(70500000));
  EXPECT_EQ(chain->VFO()->TunedFrequency(), 70500000);
  ASSERT_EQ(Boxes.Messages.size(), 2U);
  EXPECT_EQ(Boxes.Messages[1].Text,
            "Unknown DDSIFType specified in Registry - Check DDSIFType key - No interface initialised");
}

// The whole radio goes on while a frame is on its way, and what it asks of the chip meanwhile is dropped.
TEST_F(Chain, TheQueueRunsInsideEveryBitOfAFrame) {
  Settings.SaveSetting("DDSAD9951", "ClkIn", "360096000");
  const auto chain = Build(0, InterfaceType::Serial);
  Serial.SetLineTime(std::chrono::milliseconds(1));
  int ticks = 0;
  const auto pump = Queue.CreateTimer([&] {
    ++ticks;
    EXPECT_FALSE(chain->VFO()->SetTunedFrequency(1));
  });
  pump->Start(std::chrono::milliseconds(10));
  Sent();
  chain->VFO()->SetTunedFrequency(70500000);
  EXPECT_EQ(Sent().size(), 1U);
  EXPECT_EQ(chain->VFO()->TunedFrequency(), 70500000);
  EXPECT_EQ(ticks, (2 + 5 * 25) / 10);
}

}  // namespace
}  // namespace quorl
