// The notch.
#include <cmath>

#include "receiver/Receiver.h"
#include "support/Rounding.h"

namespace quorl {

namespace {

constexpr std::int32_t kLowestEdge = 10;  // Hz: a notch made wider doesn't reach down to 0

}  // namespace

void Receiver::SwitchNotch(bool on) {
  Vars.NotchActive = Filters.NotchFilterI.Active = on;
  if (on) Vars.NotchDirty = true;
  Changed(ReceiverPart::Notch);
}

void Receiver::SetNotchMode(std::int32_t mode) {
  if (!Vars.NotchActive || (mode != NotchModes::Manual && mode != NotchModes::Auto)) return;
  Vars.NotchMode = mode;
  // The tracker hears audio only.
  if (mode == NotchModes::Auto) Vars.NotchType = NotchTypes::Audio;
  Filters.NotchFilterI.Active = true;
  PlaceNotch();
  Vars.NotchDirty = true;
  Changed(ReceiverPart::Notch);
}

void Receiver::SetNotchType(std::int32_t type) {
  if (!Vars.NotchActive || Vars.NotchMode == NotchModes::Auto) return;
  if (type != NotchTypes::Audio && type != NotchTypes::IF) return;
  Vars.NotchType = type;
  PlaceNotch();
  Vars.NotchDirty = true;
  Changed(ReceiverPart::Notch);
}

void Receiver::SetNotchMirror(bool mirror) {
  if (!Vars.NotchActive) return;
  Vars.NotchMirror = mirror;
  Vars.NotchDirty = true;
  Changed(ReceiverPart::Notch);
}

// Audio and IF keep a value each. An offset counts downwards in frequency on the air: upwards on the IF of a
// high oscillator, which stands upside down, and downwards on that of a low one.
void Receiver::PlaceNotch() {
  if (Vars.NotchType == NotchTypes::IF) {
    const std::int32_t offset = RoundHalfEven(Vars.NotchSettings.IFCurrent);
    Vars.NotchCentre = Vars.LowSideLO ? IFCentre - offset : IFCentre + offset;
  } else {
    Vars.NotchCentre = RoundHalfEven(std::fabs(Vars.NotchSettings.AudioCurrent));
  }
  SetNotchEdges(Vars);
}

void Receiver::SetNotchCentre(std::int32_t hertz) {
  const bool onIF = Vars.NotchType == NotchTypes::IF;
  (onIF ? Vars.NotchSettings.IFCurrent : Vars.NotchSettings.AudioCurrent) = static_cast<float>(hertz);
  PlaceNotch();
  if (Filters.NotchFilterI.Active) Vars.NotchDirty = true;
  Changed(ReceiverPart::Notch);
}

void Receiver::SetNotchWidth(std::int32_t hertz) {
  Vars.NotchLastWidth = Vars.NotchWidth;
  Vars.NotchWidth = hertz;
  SetNotchEdges(Vars);
  if (Vars.NotchLo < 1) Vars.NotchLo = kLowestEdge;
  Vars.NotchDirty = true;
  Changed(ReceiverPart::Notch);
}

}  // namespace quorl
