// The whole radio with its configuration window open.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "core/FrameRig.h"

namespace quorl::test {

class ConfigRig : public testing::Test, public FrameRig {
 protected:
  using FrameRig::Run;

  ConfigRig() { KeepAudio = false; }
  void Open(const std::string& more = {}) {
    Storage.Put(kSettings, StoredText() + "[DDSAD9835]\nClkIn=50000000\n" + more);
    ASSERT_TRUE(Start());
    Click("cmdConfig");
    ASSERT_TRUE(At("frmConfig").Visible());
  }
  // The same with the power on, and blocks that flow.
  void OpenPlaying(const std::string& more = {}) {
    Open(more);
    Click("optPwr(0)");
    Run(1.0);
  }
  std::string Field(const std::string& name) { return Text("frmConfig." + name); }
  std::string FaultOf(const std::string& name) { return At("frmConfig." + name).Fault(); }
  void Enter(const std::string& name, const std::string& value) { Set("frmConfig." + name, value); }
  void Apply() { Click("frmConfig.cmdApply"); }
  std::string Stored(const std::string& section, const std::string& key) {
    return Store().GetSetting(section, key, "");
  }
  // Whether blocks flow, and the carrier is heard as on the board in use.
  bool Plays() {
    const std::int64_t before = Blocks;
    Run(0.5);
    return Frame().IsOn() && Blocks - before >= 10;
  }
};

}  // namespace quorl::test
