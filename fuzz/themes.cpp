// Any bytes as a colour theme: colours of 24 bits, each key taken or named, and a save that reads back the
// same.
#include <cstddef>
#include <cstdint>
#include <string>

#include "Demand.h"
#include "config/ThemeFile.h"
#include "platform/virtual/VirtualFiles.h"

namespace {

using quorl::Swatch;
using quorl::fuzz::Demand;

constexpr quorl::Colour kUnchanged = 0x1234567;  // no colour that a file could hold

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  quorl::ThemeColours before;
  for (std::size_t i = 0; i < quorl::kSwatchCount; ++i) before[static_cast<Swatch>(i)] = kUnchanged;
  const quorl::ThemeContent theme = quorl::ReadTheme(text, before);
  std::size_t taken = 0;
  for (std::size_t i = 0; i < quorl::kThemeKeyCount; ++i) {
    const quorl::Colour colour = theme.Colours[static_cast<Swatch>(i)];
    Demand(colour == kUnchanged || colour <= 0xFFFFFF);
    taken += colour != kUnchanged;
  }
  Demand(theme.HasActive || taken == 0);
  if (theme.HasActive) Demand(taken + theme.Missing.size() + theme.Unfit.size() == quorl::kThemeKeyCount);
  Demand(quorl::ThemeFault(theme, "a.thm").empty() == (taken == quorl::kThemeKeyCount));

  // Into whatever the file held.
  quorl::VirtualFiles files;
  files.Put("a.thm", text);
  quorl::ThemeColours saved;
  for (std::size_t i = 0; i < quorl::kThemeKeyCount; ++i)
    saved[static_cast<Swatch>(i)] = static_cast<quorl::Colour>(i);
  Demand(!quorl::SaveTheme(files, "a.thm", saved));
  quorl::Failure failure;
  const quorl::ThemeContent again = quorl::ReadTheme(files.Read("a.thm", failure).value(), before);
  Demand(again.Colours.SameTheme(saved));
  return 0;
}
