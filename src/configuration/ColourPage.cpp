#include "configuration/ColourPage.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "config/ThemeFile.h"
#include "profile/modIniFiles.h"
#include "support/Product.h"
#include "support/ScopedFlag.h"
#include "support/Text.h"

namespace quorl {

namespace {

constexpr char kForm[] = "frmConfig", kPage[] = "frmConfig.frConfigs(6)";
constexpr char kFilter[] = "SDR Colour Themes (*.thm)|*.thm";
constexpr char kOwnSection[] = "ComDlg";

std::string Named(const char* control) {
  return std::string(kForm) + "." + control;
}

std::string OwnKey(std::size_t index) {
  return "CustomColour(" + std::to_string(index) + ")";
}

// As it is written everywhere else: red first.
std::string RedFirst(Colour colour) {
  char text[8];
  std::snprintf(text, sizeof text, "#%02X%02X%02X", colour & 0xFF, colour >> 8 & 0xFF, colour >> 16 & 0xFF);
  return text;
}

constexpr std::pair<Swatch, Colour AnalyserProperties::*> kScope[] = {
    {Swatch::ScopeBack, &AnalyserProperties::ScopeBackColour},
    {Swatch::Graticule, &AnalyserProperties::GraticuleColour},
    {Swatch::NotchFilter, &AnalyserProperties::NotchFilterColour},
    {Swatch::FilterCurve, &AnalyserProperties::FilterCurveColour},
    {Swatch::XText, &AnalyserProperties::XTextColour},
    {Swatch::YText, &AnalyserProperties::YTextColour},
    {Swatch::ControlNormal, &AnalyserProperties::ControlColourNormal},
    {Swatch::ControlFocused, &AnalyserProperties::ControlColourFocused},
};

ThemeColours DefaultColours() {
  ThemeColours colours;
  TakePanelColours(ColourSchemes(), colours);
  const AnalyserSettings scope;
  for (const auto& [swatch, field] : kScope) colours[swatch] = scope.*field;
  colours[Swatch::Y1] = scope.Y1BaseColour;
  colours[Swatch::Y2] = scope.Y2BaseColour;
  return colours;
}

}  // namespace

ColourPage::ColourPage(ControlRegistry& registry, ColourPageLinks links)
    : cmdSDRPreviewColours(registry, Named("cmdSDRPreviewColours")),
      cmdSDRControlDefaults(registry, Named("cmdSDRControlDefaults")),
      cmdScopeDefaults(registry, Named("cmdScopeDefaults")),
      cmdSDRColoursLoad(registry, Named("cmdSDRColoursLoad")),
      cmdSDRColoursSave(registry, Named("cmdSDRColoursSave")),
      cboTheme(registry, Named("cboTheme")),
      registry_(registry),
      links_(std::move(links)) {
  MakeSwatches(registry);
  ConnectPreview();
  cmdSDRControlDefaults.Caption = "Panel defaults";
  cmdSDRControlDefaults.Click = [this] { TakeDefaults(0, kFirstScopeSwatch); };
  cmdScopeDefaults.Caption = "Scope defaults";
  cmdScopeDefaults.Click = [this] { TakeDefaults(kFirstScopeSwatch, kSwatchCount); };
  cmdSDRColoursLoad.Caption = "Load...";
  cmdSDRColoursLoad.ToolTip = "Fill the swatches from a theme file";
  cmdSDRColoursLoad.Click = [this] { LoadFile(); };
  cmdSDRColoursSave.Caption = "Save...";
  cmdSDRColoursSave.ToolTip = "Write the swatches to a theme file";
  cmdSDRColoursSave.Click = [this] { SaveFile(); };
  cboTheme.ToolTip = "Theme, seen at once and kept at Apply";
  cboTheme.Click = [this] { ChooseTheme(); };
  // The page's pictures are no part of the panel that is painted.
  links_.Colours.AddRepaint([this] { ShowSwatches(); });
}

void ColourPage::MakeSwatches(ControlRegistry& registry) {
  for (std::size_t i = 0; i < kSwatchCount; ++i) {
    const SwatchName& name = kSwatchNames[i];
    Picture& swatch = Swatches.emplace_back(registry, Named(name.Key));
    swatch.AccessibleName = std::string(name.Caption) + " colour";
    CommandButton& button = Buttons.emplace_back(registry, Named(name.Button));
    button.Caption = name.Caption;
    button.ToolTip = std::string(i < kThemeKeyCount ? "Choose another colour"
                                                    : "Kept with the settings; nothing is painted in it yet");
    const auto choose = [this, i] { Choose(static_cast<Swatch>(i)); };
    swatch.Click = choose;
    button.Click = choose;
  }
}

void ColourPage::ConnectPreview() {
  CommandButton& button = cmdSDRPreviewColours;
  button.Caption = "Preview";
  button.ToolTip = "The panel in these colours, as long as the button or Space is held";
  button.MouseDown = [this](const MouseEvent& at) {
    if (at.Button == MouseButton::Left) Hold({Key::Space, {}});
  };
  button.KeyDown = [this](const Key& key) { Hold(key); };
  button.MouseUp = [this] { LetGo(); };
  button.KeyUp = [this](const Key& key) {
    if (key.Code == Key::Space) LetGo();
  };
  button.LostFocus = [this] { LetGo(); };
}

// Other keys are the window's.
void ColourPage::Hold(const Key& key) {
  if (key.Code != Key::Space) {
    if (Control* form = registry_.Find(kForm)) form->KeyDown(key);
    return;
  }
  if (held_) return;  // a key that repeats
  held_ = true;
  Preview();
}

void ColourPage::LetGo() {
  if (std::exchange(held_, false)) EndPreview();
}

void ColourPage::Preview() {
  if (!inForce_) inForce_ = Live();
  if (watching_.empty()) {
    Control *form = registry_.Find(kForm), *page = registry_.Find(kPage);
    if (form)
      watching_.push_back(form->OnChanged.Listen([this, form] {
        if (!form->Visible()) EndPreview();
      }));
    if (page)
      watching_.push_back(page->OnChanged.Listen([this, page] {
        if (!page->Visible()) LetGo();
      }));
  }
  MakeLive(chosen_);
  links_.Colours.ReColour();
}

void ColourPage::EndPreview() {
  held_ = false;
  if (!inForce_) return;
  MakeLive(*std::exchange(inForce_, std::nullopt));
  links_.Colours.ReColour();
}

void ColourPage::WithColoursInForce(const std::function<void()>& save) {
  if (!inForce_) return save();
  const ThemeColours seen = Live();
  MakeLive(*inForce_);
  save();
  MakeLive(seen);
}

void ColourPage::Load() {
  EndPreview();
  ListThemes();
  Show(Live());
}

void ColourPage::Apply() {
  inForce_.reset();
  held_ = false;
  MakeLive(chosen_);
}

ThemeColours ColourPage::Live() const {
  ThemeColours live;
  TakePanelColours(links_.Scheme, live);
  for (const auto& [swatch, field] : kScope) live[swatch] = links_.Scope.*field;
  live[Swatch::Y1] = links_.Scope.Y1BaseColour();
  live[Swatch::Y2] = links_.Scope.Y2BaseColour();
  return live;
}

void ColourPage::MakeLive(const ThemeColours& colours) {
  GivePanelColours(colours, links_.Scheme);
  for (const auto& [swatch, field] : kScope) links_.Scope.*field = colours[swatch];
  links_.Scope.SetY1BaseColour(colours[Swatch::Y1]);
  links_.Scope.SetY2BaseColour(colours[Swatch::Y2]);
}

void ColourPage::Show(const ThemeColours& colours) {
  chosen_ = colours;
  ShowSwatches();
  MarkTheme();
}

void ColourPage::ShowSwatches() {
  for (std::size_t i = 0; i < kSwatchCount; ++i) {
    const Colour colour = chosen_[static_cast<Swatch>(i)];
    Swatches[i].BackColour = colour;
    Swatches[i].Caption = RedFirst(colour);
  }
}

void ColourPage::Choose(Swatch swatch) {
  CustomColours own = OwnColours();
  const auto colour = links_.Boxes.AskColour(chosen_[swatch], own);
  KeepOwnColours(own);
  if (!colour) return;
  ThemeColours colours = chosen_;
  colours[swatch] = *colour & 0xFFFFFF;
  Show(colours);
}

CustomColours ColourPage::OwnColours() const {
  CustomColours own{};
  own.fill(0xFFFFFF);
  for (std::size_t i = 0; i < own.size(); ++i) links_.Store.ReadColour(kOwnSection, OwnKey(i), own[i]);
  return own;
}

void ColourPage::KeepOwnColours(const CustomColours& own) {
  if (own == OwnColours()) return;
  for (std::size_t i = 0; i < own.size(); ++i) {
    links_.Store.SaveSetting(kOwnSection, OwnKey(i),
                             NumberText(static_cast<std::int32_t>(own[i] & 0xFFFFFF)));
  }
}

void ColourPage::TakeDefaults(std::size_t first, std::size_t end) {
  const ThemeColours defaults = DefaultColours();
  ThemeColours colours = chosen_;
  for (std::size_t i = first; i < end; ++i)
    colours[static_cast<Swatch>(i)] = defaults[static_cast<Swatch>(i)];
  Show(colours);
}

void ColourPage::ListThemes() {
  std::vector<std::string> names;
  themes_.clear();
  themeFiles_.clear();
  for (const std::string& file : links_.Storage.List(links_.ThemeFolder, kThemeEnding)) {
    Failure failure;
    const auto text = links_.Storage.Read(links_.ThemeFolder + "/" + file, failure);
    const ThemeContent theme = ReadTheme(text.value_or(""), Live());
    if (!theme.HasActive) continue;
    names.push_back(file.substr(0, file.size() - std::string_view(kThemeEnding).size()));
    themes_.push_back(theme.Colours);
    themeFiles_.push_back(links_.ThemeFolder + "/" + file);
  }
  const ScopedFlag guard(marking_);
  cboTheme.SetItems(names);
}

// The theme that the swatches show, if it is one of the list.
void ColourPage::MarkTheme() {
  const ScopedFlag guard(marking_);
  const auto same = std::find_if(themes_.begin(), themes_.end(),
                                 [this](const ThemeColours& theme) { return theme.SameTheme(chosen_); });
  cboTheme.SetListIndex(same == themes_.end() ? -1 : static_cast<int>(same - themes_.begin()));
}

void ColourPage::ChooseTheme() {
  const int item = cboTheme.ListIndex();
  if (marking_ || item < 0 || item >= static_cast<int>(themes_.size())) return;
  const auto at = static_cast<std::size_t>(item);
  const auto colours = ReadFile(themeFiles_[at]);
  if (!colours) return MarkTheme();
  themes_[at] = *colours;
  Show(*colours);
  Preview();
}

std::optional<ThemeColours> ColourPage::ReadFile(const std::string& path) {
  Failure failure;
  const auto text = links_.Storage.Read(path, failure);
  if (!text) {
    Tell(failure->Text);
    return {};
  }
  const ThemeContent theme = ReadTheme(*text, chosen_);
  if (const std::string fault = ThemeFault(theme, path); !fault.empty()) Tell(fault);
  return theme.HasActive ? std::optional(theme.Colours) : std::nullopt;
}

void ColourPage::LoadFile() {
  const auto path = links_.Boxes.AskOpenFile({.Title = "Load SDr Colour Theme Filename",
                                              .Filter = kFilter,
                                              .Directory = links_.ThemeFolder,
                                              .FileName = {}});
  if (!path) return;
  if (const auto colours = ReadFile(*path)) Show(*colours);
}

void ColourPage::SaveFile() {
  auto path = links_.Boxes.AskSaveFile({.Title = "Save SDr Colour Theme Filename",
                                        .Filter = kFilter,
                                        .Directory = links_.ThemeFolder,
                                        .FileName = {}});
  if (!path) return;
  if (!EndsWithNoCase(*path, kThemeEnding)) *path += kThemeEnding;
  if (links_.Storage.Exists(*path) &&
      links_.Boxes.ShowMessage({.Text = *path + " is there already. Replace its colours?",
                                .Title = kProductName,
                                .Icon = MessageIcon::Question,
                                .Buttons = MessageButtons::YesNo}) != MessageAnswer::Yes)
    return;
  if (const Failure failure = SaveTheme(links_.Storage, *path, chosen_))
    return TellProfileFault(links_.Boxes, "ProfileSaveItem: ", *failure);
  ListThemes();
  MarkTheme();
}

void ColourPage::Tell(const std::string& text) {
  links_.Boxes.ShowMessage({.Text = text, .Title = kProductName, .Icon = MessageIcon::Warning});
}

}  // namespace quorl
