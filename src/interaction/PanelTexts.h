// The words on the panel: captions and tool tips of the option groups, and how they get there.
#pragma once

#include <array>
#include <span>

#include "controls/Controls.h"
#include "state/PublicConstants.h"

namespace quorl {

// A button of an option group as the panel shows it.
struct ButtonText {
  const char* Caption;  // '&' stands before the mnemonic
  const char* ToolTip;
};

inline constexpr std::array<const char*, 4> SDRModelNames{"DRT1", "ELEKTOR DRM", "IQ Xtal RX",
                                                          "Real to IQ RX"};

inline constexpr std::array<ButtonText, DemodMode::Count> DemodModeTexts{{
    {"&AM", "AM Demodulation"},
    {"&USB", "Single Sideband - Upper Sideband"},
    {"&LSB", "Single Sideband - Lower Sideband"},
    {"&DRM", "DRM mode - Select, then launch Dream/DRM.EXE manually"},
    {"&FM", "Frequency Demodulation"},
    {"&BC", "AM Demodulation "},
}};

inline constexpr std::array<ButtonText, FilterModeCount> FilterModeTexts{{
    {"5.0 KHz", "Strong AM Broadcast"},
    {"400 Hz", "CW"},
    {"2.4 KHz", "DX SSB"},
    {"3.2 KHz", "Strong SSB"},
    {"4.0 KHz", "AM Talk Radio"},
}};

inline constexpr std::array<ButtonText, IFFilterMode::Count> IFFilterModeTexts{{
    {"Off", "OFF"},
    {"Man", "Manually Set IF Filter"},
    {"Track", "Tracks Main Filters"},
}};

inline constexpr std::array<ButtonText, 4> AGCModeTexts{{
    {"Off", "AGC OFF"},
    {"Fast", "Fast (CW)"},
    {"Normal", "Normal (AM)"},
    {"Slow", "Slow (SSB)"},
}};

inline constexpr std::array<ButtonText, 2> NotchModeTexts{{{"Man", "Manual Notch"}, {"Auto", "Auto Notch"}}};

inline constexpr std::array<ButtonText, 4> DisplaySizeTexts{{
    {"Ext", "Spectrum Display & Configuration Buttons"},
    {"Std", "All the controls"},
    {"Comp", "Just VFO & S Meter"},
    {"Full", "Everything + Config Button"},
}};

inline constexpr std::array<ButtonText, 3> PowerTexts{{
    {"On", "Start Receiving"},
    {"Off", "Stop Receiving"},
    {"&Close", "Close the Receiver"},
}};

inline constexpr std::array<ButtonText, 4> SpectrumSourceTexts{{
    {"IF in", "IF Input"},
    {"Pre Demod", "After IF & Notch Filters"},
    {"Post Demod", "Unfiltered Demodulation"},
    {"AF Out", "What you hear"},
}};

inline constexpr std::array<ButtonText, 2> InterfaceTypeTexts{{
    {"Par", "Parallel Port DDS Control"},
    {"Ser", "Serial Port DDS Control"},
}};

inline constexpr std::array<const char*, 5> RecordSampleRateTexts{"48K", "24K", "12K", "6K", "3k"};
inline constexpr std::array<const char*, 2> RecordSampleBitsTexts{"16", "8"};

// Captions and tool tips of a group's first buttons.
inline void SetTexts(OptionGroup& group, std::span<const ButtonText> texts) {
  int index = 0;
  for (const ButtonText& text : texts) {
    OptionButton& button = group(index++);
    button.Caption = text.Caption;
    button.ToolTip = text.ToolTip;
  }
}

}  // namespace quorl
