// `quorlsdr-cli plan`: lists, finds faults with their lines, mends.
#include "cli/CliRunner.h"

namespace quorl::test {
namespace {

class PlanTest : public CliTest {
 protected:
  void ExpectLine(const CliResult& result, const std::string& line) const {
    EXPECT_NE(("\n" + result.Output).find("\n" + line), std::string::npos) << line << "\nin\n"
                                                                           << result.Output;
  }
};

TEST_F(PlanTest, FaultsAreToldWithTheirLines) {
  Put("a.bpl",
      "[MainBand]\r\nCaption=Mine\r\nColour=red\r\n[SubBand.0]\r\nCaption=Forty metres\r\nFreqMin=7200000\r\n"
      "FreqMax=7000000\r\nFreqCurrent=7100000\r\nTuneStep=fast\r\n[Preset.0.0]\r\nFreqCurrent=9000000\r\n"
      "[subband.0]\r\nFreqMin=1\r\n[Preset.0.13]\r\n[Preset.3.1]\r\nFreqCurrent=5\r\n");
  const CliResult result = Cli("plan check a.bpl");
  EXPECT_EQ(result.ExitCode, 1) << result.Errors;
  for (const char* line : {
           "a.bpl:1: plan \"Mine\", sub-bands 0 to 17\n",
           "a.bpl:3: warning: unknown key Colour\n",
           "a.bpl:4: warning: SubBand.0 lacks ActivePreset\n",
           "a.bpl:4: warning: SubBand.0: FreqMin lies above FreqMax\n",
           "a.bpl:4: warning: SubBand.0 lacks DemodMode, FilterMode, ",
           "a.bpl:5: warning: the caption is cut to \"Forty \"\n",
           "a.bpl:9: warning: TuneStep is no number: the keys read after it keep their first values\n",
           "a.bpl:10: warning: Preset.0.0 lies outside of its sub-band\n",
           "a.bpl:10: Preset.0.0 \"P1\", 9000 kHz, AM, Preset1\n",
           "a.bpl:12: warning: section subband.0 stands at line 4 already: this one is not read\n",
           "a.bpl:14: warning: unknown section Preset.0.13: nothing reads it\n",
           "a.bpl:15: warning: Preset.3.1 is not read: its sub-band is not used\n",
       }) {
    ExpectLine(result, line);
  }
}

TEST_F(PlanTest, FormatIsMendedAndTheFileAsItWasKept) {
  const std::string before = "\xEF\xBB\xBF[MainBand]\nCaption=Mine\r\nDescription=D";
  Put("a.bpl", before);
  const CliResult first = Cli("plan check a.bpl");
  EXPECT_EQ(first.ExitCode, 1);
  ExpectLine(first, "a.bpl:1: warning: a byte order mark hides the first section\n");
  ExpectLine(first,
             "a.bpl:1: warning: ends in a line feed alone: it and the next one are read as one line\n");
  ExpectLine(first, "a.bpl:3: warning: the last line has no end, and is not read\n");
  EXPECT_EQ(Get("a.bpl"), before);
  EXPECT_EQ(Cli("plan check --fix a.bpl").ExitCode, 0);
  EXPECT_EQ(Get("a.bpl"), "[MainBand]\r\nCaption=Mine\r\nDescription=D\r\n");
  EXPECT_EQ(Get("a.bpl.bak"), before);
  EXPECT_EQ(Cli("plan check gone.bpl").ExitCode, 2);
  EXPECT_EQ(Cli("plan list gone.bpl").ExitCode, 2);
}

TEST_F(PlanTest, ThePlansThatComeAlongAreClean) {
  const CliResult result = Cli("plan check '" QUORL_SOURCE_DIR "'/data/bandplans/*.bpl");
  EXPECT_EQ(result.ExitCode, 0) << result.Output;
  EXPECT_NE(result.Output.find("plan \"Amateur\""), std::string::npos);
}

TEST_F(PlanTest, PresetsAreListedWithPlanBandAndMode) {
  Put("a.bpl",
      "[MainBand]\r\nCaption=Mine\r\n[SubBand.0]\r\nCaption=40m\r\nFreqMin=7000000\r\n"
      "[Preset.0.2]\r\nDescription=Net\r\nFreqCurrent=7077500\r\nDemodMode=2\r\n");
  ExpectLine(Cli("plan list a.bpl"), "Mine         40m          7077.500  LSB  Net\n");
  EXPECT_NE(Cli("plan list --json a.bpl").Output.find("\"khz\": 7077.5"), std::string::npos);
}

}  // namespace
}  // namespace quorl::test
