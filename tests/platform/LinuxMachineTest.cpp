#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/ScratchDirectory.h"
#include "platform/linux/lines/LinuxPrinterPort.h"
#include "platform/linux/system/LinuxClock.h"
#include "platform/linux/system/TerminalDialogs.h"

namespace quorl {
namespace {

class MemoryPrinterPorts : public PrinterCalls {
 public:
  std::vector<PrinterPortNumber> List() override { return {{0, 0x378}, {3, 0x278}}; }
  int OpenPort(int number) override {
    told << "open" << number << " ";
    return driverOpens ? 40 + number : -1;
  }
  void ClosePort(int file) override { told << "close" << file << " "; }
  bool Claim(int) override { return driverClaims; }
  void Release(int file) override { told << "release" << file << " "; }
  bool WriteData(int file, std::uint8_t value) override {
    told << file << "=" << int{value} << " ";
    return true;
  }
  bool AllowRaw(std::uint16_t address, bool on) override {
    told << (on ? "allow" : "forbid") << std::hex << address << std::dec << " ";
    return rawAllowed;
  }
  void WriteRaw(std::uint16_t address, std::uint8_t value) override {
    told << std::hex << address << std::dec << "=" << int{value} << " ";
  }

  bool driverOpens = true, driverClaims = true, rawAllowed = true;
  std::ostringstream told;
};

TEST(LinuxPrinterPortTest, TheDriversPortOfTheAddressComesFirst) {
  MemoryPrinterPorts calls;
  {
    LinuxPrinterPort port(calls);
    port.Write(0x278, 4);
    port.Write(0x278, 7);
    port.Write(0x378, 0);
  }
  EXPECT_EQ(calls.told.str(), "open3 43=4 43=7 release43 close43 open0 40=0 release40 close40 ");
}

TEST(LinuxPrinterPortTest, RawAccessComesSecondAndAPortOutOfReachIsAskedForOnce) {
  MemoryPrinterPorts calls;
  calls.driverClaims = false;
  {
    LinuxPrinterPort port(calls);
    port.Write(0x378, 5);
    port.Write(0x378, 7);
    EXPECT_EQ(port.Prepare(0x378), LinuxPrinterPort::Access::Raw);
  }
  EXPECT_EQ(calls.told.str(), "open0 close40 allow378 378=5 378=7 forbid378 ");

  calls.told.str("");
  calls.rawAllowed = false;
  LinuxPrinterPort port(calls);
  port.Write(0x3bc, 5);
  port.Write(0x3bc, 7);
  EXPECT_EQ(calls.told.str(), "allow3bc ");
  const Failure failure = port.Check(0x3bc);
  ASSERT_TRUE(failure);
  EXPECT_NE(failure->Text.find("0x3BC"), std::string::npos);
  EXPECT_NE(failure->Text.find("group lp"), std::string::npos);
}

TEST(TerminalDialogsTest, MessagesAreWrittenAndQuestionsChangeNothing) {
  std::ostringstream output;
  TerminalDialogs dialogs(output);
  EXPECT_EQ(dialogs.ShowMessage({"No device", "Sound", MessageIcon::Warning, MessageButtons::Ok}),
            MessageAnswer::Ok);
  EXPECT_EQ(dialogs.ShowMessage({"Overwrite?", "", MessageIcon::Question, MessageButtons::YesNo}),
            MessageAnswer::No);
  EXPECT_EQ(dialogs.ShowMessage({"Save?", "", MessageIcon::Question, MessageButtons::YesNoCancel}),
            MessageAnswer::Cancel);
  EXPECT_EQ(output.str(), "Sound: No device\nOverwrite?\nSave?\n");
  EXPECT_FALSE(dialogs.AskOpenFile({}));
}

TEST(LinuxClockTest, TellsLocalTimeAndNeverStepsBack) {
  LinuxClock clock;
  const std::int64_t first = clock.Microseconds();
  const std::time_t before = std::time(nullptr);
  const LocalTime now = clock.Now();
  std::tm parts{};
  parts.tm_year = now.Year - 1900;
  parts.tm_mon = now.Month - 1;
  parts.tm_mday = now.Day;
  parts.tm_hour = now.Hour;
  parts.tm_min = now.Minute;
  parts.tm_sec = now.Second;
  parts.tm_isdst = -1;
  EXPECT_NEAR(std::difftime(std::mktime(&parts), before), 0.0, 1.5);
  EXPECT_LT(now.Millisecond, 1000);
  EXPECT_GE(clock.Microseconds(), first);
}

}  // namespace
}  // namespace quorl
