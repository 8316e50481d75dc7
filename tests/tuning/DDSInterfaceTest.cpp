#include <gtest/gtest.h>

#include "TuningRig.h"
#include "tuning/clsDDSParallelIF.h"
#include "tuning/clsDDSSerialIF.h"

namespace quorl {
namespace {

// One letter a call: D, R, B for DTR, RTS, break asserted, small letters for released.
std::string Calls(VirtualSerialPort& port) {
  std::string calls;
  for (const SerialLevel& level : port.Levels()) {
    const char letters[] = {'R', 'D', 'B'};
    const char letter = letters[static_cast<int>(level.Line)];
    calls += level.On ? letter : static_cast<char>(letter - 'A' + 'a');
  }
  port.ClearLevels();
  return calls;
}

class Serial : public ::testing::Test, protected TuningRig {
 protected:
  Serial() : line(TuningRig::Serial, Queue, Boxes, Settings) { line.Name = "DDSSerialIF"; }
  std::string CallsOf(const std::function<void()>& action) {
    TuningRig::Serial.ClearLevels();
    yieldsBefore = Queue.YieldCount();
    action();
    yields = Queue.YieldCount() - yieldsBefore;
    return Calls(TuningRig::Serial);
  }

  clsDDSSerialIF line;
  std::int64_t yieldsBefore = 0, yields = 0;
};

TEST_F(Serial, OpeningRestsAllSignalsAtZero) {
  EXPECT_GT(line.OpenPort(false), 0);
  EXPECT_EQ(TuningRig::Serial.OpenedDevices(), std::vector<std::string>{"/dev/ttyS0"});
  EXPECT_EQ(Calls(TuningRig::Serial), "DRb");
  line.OpenPort(false);
  EXPECT_EQ(TuningRig::Serial.OpenedDevices().size(), 1U) << "an open port stays as it is";
}

TEST_F(Serial, PolarityOfTheThreeSignals) {
  line.OpenPort(false);
  EXPECT_EQ(CallsOf([&] {
              line.IOUPD(0), line.IOUPD(1), line.IOUPD(-1), line.IOUPD(7);
              line.SDATA(0), line.SDATA(128), line.SDATA(-2);
              line.SCLCK(0), line.SCLCK(1), line.SCLCK(2), line.SCLCK(3);
              line.StartSequence(), line.EndSequence();
            }),
            "DdDd"
            "RrR"
            "bBbB"
            "Bb");
}

TEST_F(Serial, BytesAndWordsGoOutBitByBit) {
  line.OpenPort(false);
  EXPECT_EQ(CallsOf([&] { line.Out8(0xA1); }),
            "b"
            "rBb"
            "RBb"
            "rBb"
            "RBb"
            "RBb"
            "RBb"
            "RBb"
            "rBb");
  EXPECT_EQ(yields, 17);
  EXPECT_EQ(CallsOf([&] { EXPECT_EQ(line.Send(0xFF), 0); }), "brBbrBbrBbrBbrBbrBbrBbrBb");

  std::string zeros;
  for (int i = 0; i < 14; ++i) zeros += "rBb";
  EXPECT_EQ(CallsOf([&] { line.Out16(0x8001); }), "DRBb" + zeros + "RBbd");
  EXPECT_EQ(yields, 48);
  // Each round looks at all places from its own upwards.
  EXPECT_EQ(CallsOf([&] { line.Out32(2); }), "D" + zeros + zeros + "rBbrBb" + "RBbRBb" + "d");
  EXPECT_EQ(yields, 1 + 32 * 4 + 2);
  EXPECT_EQ(CallsOf([&] { line.Out32(-1); }), "D" + zeros + zeros + "rBbrBbrBbrBb" + "d");

  line.WaitTime = 0;
  CallsOf([&] { line.Out8(0x55); });
  EXPECT_EQ(yields, 0);
}

TEST_F(Serial, AClosedPortMovesNoLine) {
  EXPECT_EQ(CallsOf([&] {
              EXPECT_EQ(line.Send(0x12), 1);
              line.IOUPD(1);
            }),
            "");
  EXPECT_EQ(yields, 0);
  line.OpenPort(false);
  line.ClosePort();
  EXPECT_EQ(line.hComm(), 0);
  EXPECT_EQ(line.Send(0x12), 1);
  EXPECT_EQ(line.GetEncoderBits(), 0U);
}

TEST_F(Serial, PollModeKnowsOneDigitAndEventModeAll) {
  line.PortNo = 15;
  line.OpenPort(false);
  line.ClosePort();
  Settings.SaveSetting("DDSSerialIF", "COM15", "/dev/serial/by-id/usb-FTDI");
  line.OpenPort(true);
  EXPECT_EQ(TuningRig::Serial.OpenedDevices(),
            (std::vector<std::string>{"/dev/ttyS0", "/dev/serial/by-id/usb-FTDI"}));
}

TEST_F(Serial, AFailedOpenIsToldOnce) {
  TuningRig::Serial.FailOpen(Error{2, "none"});
  line.PortNo = 3;
  EXPECT_EQ(line.OpenPort(false), 0);
  EXPECT_EQ(line.OpenPort(true), 0);
  line.Send(1);
  ASSERT_EQ(Boxes.Messages.size(), 2U);
  EXPECT_EQ(Boxes.Messages[0].Text,
            "DDSSerialIF : PollMode : Unable to Open COM3\n"
            "Please Set valid COM port in Configuration, then Close and Restart");
  const std::string start =
      "Unable to Open COM3\nPlease Set valid COM port in Configuration, then Close and Restart\n"
      "clsDDSSerialIF.cls:clsDDSSerialIF:OpenPort:";
  EXPECT_EQ(Boxes.Messages[1].Text.substr(0, start.size()), start);
  EXPECT_GT(std::stoi(Boxes.Messages[1].Text.substr(start.size())), 0);
}

TEST_F(Serial, OnlyEventModeHearsTheStatusLines) {
  int heard = 0;
  line.OnComm = [&] { ++heard; };
  line.OpenPort(false);
  TuningRig::Serial.SetStatus(ModemStatus::Cts);
  Queue.Yield();
  EXPECT_EQ(heard, 0);
  EXPECT_EQ(line.GetEncoderBits(), ModemStatus::Cts);
  EXPECT_EQ(line.GetEncoderB0(), 0U);
  line.ClosePort();
  line.OpenPort(true);
  TuningRig::Serial.SetStatus(ModemStatus::Dsr);
  Queue.Yield();
  EXPECT_EQ(heard, 1);
  TuningRig::Serial.FailStatus(true);
  EXPECT_EQ(line.GetEncoderBits(), 0U);
  // The handle outlives the port in event mode: no second open, and bytes vanish without a word.
  line.ClosePort();
  EXPECT_GT(line.OpenPort(true), 0);
  EXPECT_EQ(TuningRig::Serial.OpenedDevices().size(), 2U);
  EXPECT_EQ(CallsOf([&] { EXPECT_EQ(line.Send(1), 0); }), "");
}

TEST_F(Serial, SettingsComeBack) {
  Settings.SaveSetting("DDSSerialIF", "PortNo", "0");
  Settings.SaveSetting("DDSSerialIF", "WaitTime", "soon");
  line.RestoreSettings();
  EXPECT_EQ(line.PortNo, 1);
  EXPECT_EQ(line.WaitTime, 1.0 / 230400);
  {
    clsDDSSerialIF other(TuningRig::Serial, Queue, Boxes, Settings);
    other.Name = "Other";
    other.PortNo = 4;
    other.OpenPort(false);
    other.Save();
  }
  EXPECT_FALSE(TuningRig::Serial.IsOpen());
  EXPECT_EQ(Settings.GetSetting("Other", "PortNo", ""), "4");
  EXPECT_EQ(Settings.GetSetting("Other", "WaitTime", ""), "0.000004340277777777778");
}

class Parallel : public ::testing::Test, protected TuningRig {
 protected:
  Parallel() : line(Printer, Queue, Settings) { line.Name = "DDSParallelIF"; }
  // Writes and yields of an action, a yield shown as -1.
  std::string WritesOf(const std::function<void()>& action) {
    Printer.ClearLevels();
    yields = Queue.YieldCount();
    action();
    yields = Queue.YieldCount() - yields;
    std::string writes;
    for (const PrinterLevel& level : Printer.Levels()) writes += static_cast<char>('0' + level.Value);
    return writes;
  }

  clsDDSParallelIF line;
  std::int64_t yields = 0;
};

TEST_F(Parallel, PrimitivesWriteTheirValues) {
  EXPECT_EQ(WritesOf([&] { line.SDATA(0); }), "575");
  EXPECT_EQ(yields, 2);
  EXPECT_EQ(WritesOf([&] { line.SDATA(64); }), "464");
  EXPECT_EQ(WritesOf([&] { line.IOUPD(0), line.IOUPD(1), line.IOUPD(9); }), "400");
  EXPECT_EQ(yields, 0);
  EXPECT_EQ(WritesOf([&] { line.SCLCK(0), line.SCLCK(1); }), "00");
  EXPECT_EQ(WritesOf([&] { line.StartSequence(), line.EndSequence(); }), "04");
  EXPECT_EQ(yields, 6);
  EXPECT_EQ(Printer.Levels().front().Address, 0x378);
}

TEST_F(Parallel, BytesAndWords) {
  EXPECT_EQ(WritesOf([&] { EXPECT_EQ(line.Send(0xC1), 0); }),
            "464"
            "464"
            "575"
            "575"
            "575"
            "575"
            "575"
            "464");
  std::string zeros;
  for (int i = 0; i < 14; ++i) zeros += "575";
  EXPECT_EQ(WritesOf([&] { line.Out16(0x8001); }), "00464" + zeros + "4644");
  EXPECT_EQ(yields, 2 + 2 + 16 * 2 + 2);
  EXPECT_EQ(WritesOf([&] { line.Out32(0xFFFF8001); }), "00" + zeros + "575575" + "464" + zeros + "464" + "4");
  line.WaitTime = 0;
  WritesOf([&] { line.Out8(0x55); });
  EXPECT_EQ(yields, 0);
}

TEST_F(Parallel, NonInvertingAlwaysTakesStateZero) {
  line.NonInverting = true;
  EXPECT_EQ(WritesOf([&] { line.SDATA(1), line.SDATA(0), line.IOUPD(1), line.IOUPD(0); }), "57557544");
}

TEST_F(Parallel, SettingsComeBack) {
  line.NonInverting = true;
  Settings.SaveSetting("DDSParallelIF", "PortAddress", "70000");
  line.RestoreSettings();
  EXPECT_EQ(line.PortAddress, 0x378);
  EXPECT_FALSE(line.NonInverting) << "its default is False, not what it was";
  {
    clsDDSParallelIF other(Printer, Queue, Settings);
    other.Name = "Other";
    other.PortAddress = 0x278;
    other.NonInverting = true;
    other.WaitTime = 0.000001;
    other.Save();
  }
  line.Name = "Other";
  line.RestoreSettings();
  EXPECT_EQ(line.PortAddress, 0x278);
  EXPECT_TRUE(line.NonInverting);
  EXPECT_EQ(line.WaitTime, 0.000001);
}

}  // namespace
}  // namespace quorl
