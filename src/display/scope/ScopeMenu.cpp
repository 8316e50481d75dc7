#include "display/scope/ScopeMenu.h"

#include <array>

namespace quorl {

namespace {

// What an item of mnuScope does.
enum class Does { Nothing, Switches, Window, Peaks, Waterfall, Wheel, Fits };

struct Item {
  const char* Caption;
  Does What = Does::Nothing;
  bool ScopeOptions::*Switch = nullptr;
  int Value = 0;
};

constexpr std::array kItems{
    Item{"Level view", Does::Switches, &ScopeOptions::LevelView},
    Item{"Fit levels", Does::Fits},
    Item{"-"},
    Item{"No window", Does::Window, nullptr, 0},
    Item{"Hann window", Does::Window, nullptr, 1},
    Item{"Blackman-Harris window", Does::Window, nullptr, 2},
    Item{"-"},
    Item{"Waterfall", Does::Switches, &ScopeOptions::Waterfall},
    Item{"Waterfall ...", Does::Waterfall},
    Item{"-"},
    Item{"Cursor", Does::Switches, &ScopeOptions::Cursor},
    Item{"Peaks fall", Does::Peaks, nullptr, 1},
    Item{"Peaks stay", Does::Peaks, nullptr, 2},
    Item{"Fill", Does::Switches, &ScopeOptions::Fill},
    Item{"-"},
    Item{"Passband", Does::Switches, &ScopeOptions::Passband},
    Item{"Drag its edges", Does::Switches, &ScopeOptions::EdgeDrag},
    Item{"Names", Does::Switches, &ScopeOptions::Names},
    Item{"Bands", Does::Switches, &ScopeOptions::BandShading},
    Item{"-"},
    Item{"Gestures", Does::Switches, &ScopeOptions::Gestures},
    Item{"Wheel tunes", Does::Wheel},
    Item{"Both sides (IQ board)", Does::Switches, &ScopeOptions::TwoSided},
};

constexpr std::array<const char*, 16> kWaterfallItems{"Line for each block",
                                                      "2 blocks a line",
                                                      "4 blocks a line",
                                                      "8 blocks a line",
                                                      "32 blocks a line",
                                                      "128 blocks a line",
                                                      "-",
                                                      "Viridis",
                                                      "Inferno",
                                                      "Grey",
                                                      "-",
                                                      "No time marks",
                                                      "Mark every 15 s",
                                                      "Mark every minute",
                                                      "Mark every 5 minutes",
                                                      "Mark every 15 minutes"};
constexpr int kFirstPalette = 7, kFirstMark = 11;

std::array<const char*, kItems.size()> Captions() {
  std::array<const char*, kItems.size()> captions{};
  for (std::size_t i = 0; i < kItems.size(); ++i) captions[i] = kItems[i].Caption;
  return captions;
}

template <std::size_t N>
const std::int32_t* Chosen(const std::array<std::int32_t, N>& values, int place) {
  return place >= 0 && place < static_cast<int>(N) ? &values[static_cast<std::size_t>(place)] : nullptr;
}

}  // namespace

ScopeMenu::ScopeMenu(ControlRegistry& registry, ScopeOptions& options)
    : mnuScope(registry, "mnuScope", Captions()),
      mnuWaterfall(registry, "mnuWaterfall", kWaterfallItems),
      cmdScopeView(registry, "cmdScopeView"),
      options_(options) {
  cmdScopeView.Caption = "View";
  cmdScopeView.ToolTip = "What the scope shows, and how";
  cmdScopeView.Click = [this] { PopUp(); };
  mnuScope.Click = [this](int index) { mnuScope_Click(index); };
  mnuWaterfall.Click = [this](int index) { mnuWaterfall_Click(index); };
}

void ScopeMenu::PopUp() {
  Show();
  mnuScope.PopUp();
}

void ScopeMenu::Show() {
  for (std::size_t i = 0; i < kItems.size(); ++i) {
    const Item& item = kItems[i];
    mnuScope.SetTicked(static_cast<int>(i),
                       item.What == Does::Switches ? options_.*item.Switch
                       : item.What == Does::Window ? static_cast<int>(options_.Window) == item.Value
                       : item.What == Does::Peaks  ? static_cast<int>(options_.PeakHold) == item.Value
                       : item.What == Does::Wheel  ? WheelTunes()
                                                   : false);
  }
  for (int i = 0; i < static_cast<int>(kWaterfallItems.size()); ++i) {
    const std::int32_t* blocks = Chosen(ScopeOptions::kLineBlocks, i);
    const std::int32_t* seconds = Chosen(ScopeOptions::kTimeMarks, i - kFirstMark);
    mnuWaterfall.SetTicked(i, i == kFirstPalette + options_.Palette ||
                                  (blocks != nullptr && *blocks == options_.LineBlocks) ||
                                  (seconds != nullptr && *seconds == options_.TimeMarks));
  }
}

void ScopeMenu::mnuScope_Click(int index) {
  if (index < 0 || index >= static_cast<int>(kItems.size())) return;
  const Item& item = kItems[static_cast<std::size_t>(index)];
  switch (item.What) {
    case Does::Switches:
      options_.*item.Switch = !(options_.*item.Switch);
      break;
    case Does::Window:
      options_.Window = static_cast<SpectrumWindow>(item.Value);
      break;
    case Does::Peaks: {
      const auto peaks = static_cast<PeakHolding>(item.Value);
      options_.PeakHold = options_.PeakHold == peaks ? PeakHolding::Off : peaks;
      break;
    }
    case Does::Wheel:
      SetWheelTunes(!WheelTunes());
      break;
    case Does::Fits:
      Fit();
      return;
    case Does::Waterfall:
      mnuWaterfall.PopUp();
      return;
    case Does::Nothing:
      return;
  }
  Show();
  if (OnOptions) OnOptions();
}

void ScopeMenu::mnuWaterfall_Click(int index) {
  if (const std::int32_t* blocks = Chosen(ScopeOptions::kLineBlocks, index)) {
    options_.LineBlocks = *blocks;
  } else if (const std::int32_t* seconds = Chosen(ScopeOptions::kTimeMarks, index - kFirstMark)) {
    options_.TimeMarks = *seconds;
  } else if (index >= kFirstPalette &&
             index < kFirstPalette + static_cast<int>(ScopeOptions::kPaletteNames.size())) {
    options_.Palette = index - kFirstPalette;
  } else {
    return;
  }
  Show();
  if (OnOptions) OnOptions();
}

}  // namespace quorl
