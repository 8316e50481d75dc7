// The configuration over the whole radio: what its fields show, and what Apply does.
#include <gtest/gtest.h>

#include "core/FrameRig.h"

namespace quorl::test {
namespace {

class FrmMainConfig : public testing::Test, public FrameRig {
 protected:
  using FrameRig::Run;

  FrmMainConfig() { KeepAudio = false; }
  void Open(const std::string& more = {}) {
    Storage.Put(kSettings, StoredText() + more);
    ASSERT_TRUE(Start());
    Click("cmdConfig");
    ASSERT_TRUE(At("frmConfig").Visible());
  }
  std::string Field(const std::string& name) { return Text("frmConfig." + name); }
  std::string FaultOf(const std::string& name) { return At("frmConfig." + name).Fault(); }
  void Enter(const std::string& name, const std::string& value) { Set("frmConfig." + name, value); }
  void Apply() { Click("frmConfig.cmdApply"); }
};

TEST_F(FrmMainConfig, FieldsShowTheRadioAndFollowItUntilTheyAreChanged) {
  Open("[VFO1.DRT1]\nHiSideLo=False\n[DDSParallelIF]\nPortAddress=632\n[frmMain]\nAutoTrackPresets=False\n");
  EXPECT_EQ(Field("cboSDRModel"), "DRT1");
  EXPECT_EQ(Field("txtIFFrequency"), "45 000 000");
  EXPECT_EQ(Field("txtDDSClkin"), "360 096 000");
  EXPECT_EQ(Field("chkLoLO"), "1");
  EXPECT_EQ(Field("optIF(1)"), "1");
  EXPECT_EQ(Field("txtPortAddress"), "&H278");
  EXPECT_EQ(Field("txtBitPeriod"), "0.0000043403");
  EXPECT_EQ(Field("cboCapDevices"), "Line In");
  EXPECT_EQ(Field("cboPlayDevices"), "Loudspeaker");
  EXPECT_EQ(Field("chkAutoTrackPresets"), "0");
  EXPECT_FALSE(At("frmConfig.chkUseSPL").Enabled());
  EXPECT_TRUE(At("frmConfig.frConfigs(0)").Visible());
  EXPECT_FALSE(At("frmConfig.frConfigs(1)").Visible());

  Enter("txtIFFrequency", "44 000 000");
  Click("chkTuneLo");
  VFO().SetIFFrequency(45001000);
  Run(0.5);
  EXPECT_EQ(Field("chkLoLO"), "0") << "an untouched field follows";
  EXPECT_EQ(Field("txtIFFrequency"), "44 000 000") << "what was typed stays";
  Click("frmConfig.cmdCancel");
  EXPECT_FALSE(At("frmConfig").Visible());
  Click("cmdConfig");
  EXPECT_EQ(Field("txtIFFrequency"), "45 001 000");
}

TEST_F(FrmMainConfig, AnotherBoardComesWithItsOwnValuesAndTheTunedFrequencyStays) {
  Open("[DDSAD9835]\nClkIn=50000000\n[VFO1.ElektorDRM]\nIFFrequency=456000\nTunedFrequency=60000000\n");
  Enter("cboSDRModel", "ELEKTOR DRM");
  EXPECT_EQ(Field("txtIFFrequency"), "456 000");
  EXPECT_EQ(Field("txtDDSClkin"), "50 000 000");
  EXPECT_EQ(Oscillator(), 522050000) << "nothing acts before Apply";
  Apply();
  EXPECT_EQ(Vars().SDRModelNo, 1);
  EXPECT_EQ(Digits(), "072050000");
  EXPECT_NEAR(static_cast<double>(Oscillator()), 72050000 + 4560000, 1);
  EXPECT_EQ(Store().GetSetting("frmMain", "SDRModelNo", ""), "1") << "stored at once";
  EXPECT_TRUE(Boxes.Messages.empty());
}

}  // namespace
}  // namespace quorl::test
