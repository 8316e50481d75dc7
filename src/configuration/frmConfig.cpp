// Putting together, pages, opening and closing. The fields' contents are in frmConfigLoad.cpp, the steps of
// Apply in frmConfigApply.cpp.
#include "configuration/frmConfig.h"

#include <algorithm>
#include <array>

#include "interaction/PanelColours.h"
#include "support/Product.h"

namespace quorl {
namespace {

constexpr int kFollowInterval = 250, kApplyInterval = 1;  // ms

constexpr std::array<const char*, ConfigPage::Count> kPages{
    "&Receiver", "&Interface", "&Sound", "&Tuning", "Dis&play", "&DRM", "Co&lours", "A&bout", "Re&mote"};

std::string AboutText(const std::string& version) {
  return std::string(kProductName) + (version.empty() ? "" : " " + version) +
         "\nA software defined radio receiver.\nFree software under the MIT licence: it comes without any "
         "warranty.";
}

}  // namespace

frmConfig::frmConfig(ControlRegistry& registry, ConfigLinks links)
    : cmdConfig(registry, "cmdConfig"),
      Form(registry, kConfigForm),
      TabStrip1(registry, ConfigName("TabStrip1"), ConfigPage::Count),
      frConfigs(registry, ConfigName("frConfigs"), ConfigPage::Count),
      Receiver(registry),
      Interface(registry),
      Sound(registry),
      Tuning(registry),
      Display(registry),
      DRM(registry),
      Remote(registry),
      Colours(registry, {links.Scheme, links.Scope.SpectrumAnalyser, links.Panel.Colours, links.Boxes,
                         links.Storage, links.Store, links.ThemeFolder}),
      lblAbout(registry, ConfigName("lblAbout")),
      cmdGuide(registry, ConfigName("cmdGuide")),
      lblConfigMessage(registry, ConfigName("lblConfigMessage")),
      cmdOK(registry, ConfigName("cmdOK")),
      cmdApply(registry, ConfigName("cmdApply")),
      cmdCancel(registry, ConfigName("cmdCancel")),
      links_(std::move(links)),
      faults_(lblConfigMessage),
      tmrFollow_(links_.Queue,
                 [this] {
                   fields_.Follow();
                   ShowRemote();
                 }),
      tmrApply_(links_.Queue, [this] { ApplyWhenIdle(); }) {
  Form.Visible = false;
  Form.Caption = std::string(kProductName) + " - Configuration";
  cmdConfig.Caption = "Config";
  cmdConfig.ToolTip = "Board, interface, sound, and all that is set once";
  cmdConfig.AccessibleName = "Configuration";
  lblConfigMessage.AccessibleName = "What is wrong";
  lblAbout.Caption = AboutText(links_.Version);
  cmdGuide.Caption = "&Guide";
  cmdGuide.ToolTip = "Opens the listener's guide, as F1 does in any window";
  cmdOK.Caption = "&OK";
  cmdApply.Caption = "&Apply";
  cmdCancel.Caption = "&Cancel";
  NameConfigControls(registry);
  Connect();
  ConnectFields();
}

void frmConfig::Connect() {
  for (int page = 0; page < ConfigPage::Count; ++page) {
    const char* caption = kPages[static_cast<std::size_t>(page)];
    TabStrip1(page).Caption = caption;
    std::string title = caption;
    std::erase(title, '&');
    frConfigs(page).Caption = title;
  }
  TabStrip1.Click = [this](int page) { ShowPage(page); };
  TabStrip1.Press(ConfigPage::Receiver);
  faults_.OnChange = [this] { MarkTabs(); };
  cmdConfig.Click = [this] { Open(); };
  cmdOK.Click = [this] { cmdOK_Click(); };
  cmdApply.Click = [this] { cmdApply_Click(); };
  cmdCancel.Click = [this] { cmdCancel_Click(); };
  Receiver.cmdCalDDS.Click = [this] { cmdCalDDS_Click(); };
  Receiver.cmdFirstStart.Click = [this] { links_.OpenFirstStart(); };
  cmdGuide.Click = [this] { links_.OpenGuide(); };
  Form.KeyDown = [this](const Key& key) {
    if (key.Code == Key::Escape) cmdCancel_Click();
    if (key.Code == Key::Enter) cmdOK_Click();
  };
}

void frmConfig::ShowPage(int page) {
  PaintButtons(TabStrip1, page);
  for (int i = 0; i < frConfigs.Count(); ++i) frConfigs(i).Visible = i == page;
}

// A fault on a page that isn't seen shows at its tab.
void frmConfig::MarkTabs() {
  const auto mark = [this](int page, std::initializer_list<const Control*> fields) {
    TabStrip1(page).Marked = std::any_of(fields.begin(), fields.end(),
                                         [](const Control* field) { return !field->Fault().empty(); });
  };
  mark(ConfigPage::Receiver, {&Receiver.txtIFFrequency, &Receiver.txtDDSClkin});
  mark(ConfigPage::Interface,
       {&Interface.optIF(InterfaceChoice::Parallel), &Interface.txtPortAddress,
        &Interface.txtParallelPortBitPeriod, &Interface.cboComPort, &Interface.txtBitPeriod});
  mark(ConfigPage::Display, {&Display.txtSpectrumDisplaySmoothingCount});
  mark(ConfigPage::Remote, {&Remote.txtRemoteAddress, &Remote.txtRemotePort});
}

void frmConfig::Open() {
  if (!Form.Visible()) Form_Load();
  tmrFollow_.SetInterval(kFollowInterval);
  tmrFollow_.SetEnabled(true);
  Form.Visible = true;
}

// One can tune meanwhile, but not put the chip or its clock under the calibration's feet.
void frmConfig::cmdCalDDS_Click() {
  if (IsApplying()) return;
  Form.Enabled = false;
  links_.Calibrate([this](bool applied) {
    Form.Enabled = true;
    if (applied) fields_.Load(&Receiver.txtDDSClkin);
  });
}

void frmConfig::cmdApply_Click() {
  if (IsApplying() || !Form.Enabled()) return;
  waits_ = true;
  ApplyWhenIdle();
}

void frmConfig::cmdOK_Click() {
  if (!Form.Enabled()) return;
  closes_ = true;
  cmdApply_Click();
}

void frmConfig::cmdCancel_Click() {
  if (Form.Enabled()) Close();
}

void frmConfig::Close() {
  tmrFollow_.SetEnabled(false);
  Colours.EndPreview();
  Form.Visible = false;
}

void frmConfig::Stop() {
  waits_ = false;
  tmrApply_.SetEnabled(false);
  Close();
}

bool frmConfig::IsIdle() const {
  return links_.Chain.IsIdle() && !links_.Panel.Rx.Vars.DSPRunning && !links_.IsSwitching();
}

// What the click interrupted lies below it: the frame goes on when this has returned, and the timer comes
// back.
void frmConfig::ApplyWhenIdle() {
  if (!waits_ || applying_) return;
  const bool idle = IsIdle();
  tmrApply_.SetInterval(kApplyInterval);
  tmrApply_.SetEnabled(!idle);
  if (!idle) return;
  waits_ = false;
  Apply();
}

}  // namespace quorl
