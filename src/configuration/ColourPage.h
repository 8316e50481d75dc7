// The page of the configuration on which the colours of panel and scope are chosen, and kept as themes.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "config/SettingsStore.h"
#include "config/ThemeColours.h"
#include "controls/ControlRegistry.h"
#include "controls/Controls.h"
#include "display/analyser/clsSpectrumAnalyser.h"
#include "interaction/PanelColours.h"
#include "platform/Dialogs.h"
#include "platform/Files.h"

namespace quorl {

// All of it outlives the page.
struct ColourPageLinks {
  ColourSchemes& Scheme;       // the panel's colours in force
  clsSpectrumAnalyser& Scope;  // has those of the scope
  PanelColours& Colours;
  Dialogs& Boxes;
  Files& Storage;
  SettingsStore& Store;  // keeps the user's own sixteen colours of the colour dialog
  std::string ThemeFolder;
};

// A swatch shows what is chosen. The panel takes it at Apply, and for as long as the preview's button is
// held. A theme of the list is seen on the panel at once; closing the window without Apply puts back what was
// there.
class ColourPage {
 public:
  ColourPage(ControlRegistry& registry, ColourPageLinks links);

  std::deque<Picture> Swatches;  // in the order of Swatch; "#RRGGBB" is their text
  std::deque<CommandButton> Buttons;
  CommandButton cmdSDRPreviewColours, cmdSDRControlDefaults, cmdScopeDefaults, cmdSDRColoursLoad,
      cmdSDRColoursSave;
  ComboBox cboTheme;  // the files of the theme folder

  // Shows the colours in force, and the themes that are there now.
  void Load();
  // The chosen colours come into force; whoever calls it paints the panel then (PanelColours::ReColour).
  void Apply();
  // What is only being looked at goes: the colours are those in force again.
  void EndPreview();
  // Runs `save` with the colours that are in force, whatever is being looked at.
  void WithColoursInForce(const std::function<void()>& save);

  const ThemeColours& Chosen() const { return chosen_; }

 private:
  void MakeSwatches(ControlRegistry& registry);
  void ConnectPreview();
  void Hold(const Key& key);
  void LetGo();
  void Choose(Swatch swatch);
  void TakeDefaults(std::size_t first, std::size_t end);
  void LoadFile();
  void SaveFile();
  void ChooseTheme();
  std::optional<ThemeColours> ReadFile(const std::string& path);
  void ListThemes();
  void MarkTheme();
  void Show(const ThemeColours& colours);
  void ShowSwatches();
  ThemeColours Live() const;
  void MakeLive(const ThemeColours& colours);
  void Preview();
  CustomColours OwnColours() const;
  void KeepOwnColours(const CustomColours& own);
  void Tell(const std::string& text);

  ControlRegistry& registry_;
  ColourPageLinks links_;
  ThemeColours chosen_;
  std::optional<ThemeColours> inForce_;  // while others are being looked at
  std::vector<std::string> themeFiles_;  // of the list, in its order
  std::vector<ThemeColours> themes_;
  bool held_ = false, marking_ = false;
  std::vector<Listening> watching_;
};

}  // namespace quorl
