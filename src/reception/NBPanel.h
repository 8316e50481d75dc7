// The noise blanker and its threshold.
#pragma once

#include "config/SettingsTable.h"
#include "interaction/PanelContext.h"

namespace quorl {

class NBPanel {
 public:
  explicit NBPanel(const PanelContext& context);

  Frame frNB;
  CheckBox chkNB;
  Slider sldNB;
  Dial dialNB;
  Label lblNB;  // threshold in percent of the strongest signal

  void chkNB_Click();
  void sldNB_Scroll();
  void dialNB_Change();
  void lblNB_Wheel();
  void AddSettings(SettingsTable& table);

 private:
  void Show();
  void MoveTo(int value);
  void TakeThreshold(int value);

  PanelContext context_;
  bool moving_ = false;  // slider and dial are being moved by code
  Listening listening_;
};

}  // namespace quorl
