// The audio filter and the IF filter.
#include "receiver/Receiver.h"

namespace quorl {

FilterSettingsRecord& Receiver::FilterRecord() {
  return Vars.FilterSettings.at(static_cast<std::size_t>(Vars.CurrentFilterMode));
}

FilterSettingsRecord& Receiver::IFFilterRecord() {
  return Vars.IFFilterSettings.at(static_cast<std::size_t>(Vars.CurrentIFFilterMode))
      .at(static_cast<std::size_t>(Vars.CurrentDemodMode));
}

void Receiver::SetFilterMode(std::int32_t mode) {
  if (mode < 0 || mode >= FilterModeCount) return;
  Vars.CurrentFilterMode = mode;
  TakeFilter();
  Changed(ReceiverPart::Filter);
  Changed(ReceiverPart::IFFilter);
}

void Receiver::TakeFilter() {
  const FilterSettingsRecord& record = FilterRecord();
  Vars.FilterLo = record.CurrentLo;
  Vars.FilterHi = record.CurrentHi;
  FollowFilter();
  Vars.MusicMode = record.MusicMode;
  if (Vars.MusicMode) TakeMusic(true);
  KeepEdges();
}

// The edges in force are the filter's, and the dynamic filter starts from them.
void Receiver::KeepEdges() {
  Vars.FilterHomeLo = Vars.FilterLo;
  Vars.FilterHomeHi = Vars.FilterHi;
  FilterMaker.CentreDynFilter();
  Vars.FiltersDirty = true;
}

void Receiver::SetFilterLow(std::int32_t hertz) {
  Vars.FilterLo = hertz;
  Vars.FiltersDirty = true;
  Changed(ReceiverPart::Filter);
}

void Receiver::SetFilterHigh(std::int32_t hertz) {
  Vars.FilterHi = hertz;
  Vars.FiltersDirty = true;
  Changed(ReceiverPart::Filter);
}

void Receiver::SetFilterEdges(std::int32_t low, std::int32_t high) {
  Vars.FilterLo = low;
  Vars.FilterHi = high;
  KeepEdges();
  Changed(ReceiverPart::Filter);
}

void Receiver::TakeMusic(bool on) {
  FilterSettingsRecord& record = FilterRecord();
  if (on) {
    record.MusicLoSave = Vars.FilterLo;
    Vars.FilterLo = kMusicLow;
  } else {
    Vars.FilterLo = Vars.FilterHomeLo = record.MusicLoSave;
  }
  Vars.MusicMode = record.MusicMode = on;
  Vars.FiltersDirty = true;
}

void Receiver::SetMusic(bool on) {
  if (on != Vars.MusicMode) TakeMusic(on);
  Changed(ReceiverPart::Filter);
}

void Receiver::SetDynamicFilter(bool on) {
  Vars.DynFilterActive = Filters.DynFilter.Active = on;
  Vars.FiltersDirty = true;
  if (!on) {
    Vars.FilterLo = Vars.FilterHomeLo;
    Vars.FilterHi = Vars.FilterHomeHi;
    KeepEdges();
  }
  Changed(ReceiverPart::Filter);
}

void Receiver::SwitchIFFilter(bool on) {
  Vars.FiltersDirty = true;
  if (on) {
    Vars.IFFilterActive = true;
    SetIFFilterMode(Vars.CurrentIFFilterMode);
  } else {
    Filters.IFFilterI.Active = false;
    Changed(ReceiverPart::IFFilter);
  }
}

void Receiver::SetIFFilterMode(std::int32_t mode) {
  if (!Vars.IFFilterActive || mode < 0 || mode >= IFFilterMode::Count) return;
  Vars.CurrentIFFilterMode = mode;
  Filters.IFFilterI.Active = mode != IFFilterMode::Off;
  if (mode == IFFilterMode::Manual) {
    FollowDemodMode();
  } else if (mode == IFFilterMode::Track) {
    FollowFilter();
    // Chosen by itself, a lower sideband's filter reaches up to its low edge.
    const bool lower = Vars.CurrentDemodMode == DemodMode::LSB;
    TakeIFExtents(lower ? FilterRecord().CurrentLo : FilterRecord().CurrentHi, Vars.IFLo);
  } else {
    TakeIFExtents(Vars.IFHi, Vars.IFLo);
  }
  Changed(ReceiverPart::IFFilter);
}

void Receiver::TakeIFExtents(std::int32_t high, std::int32_t low) {
  FilterSettingsRecord& record = IFFilterRecord();
  Vars.IFHi = record.CurrentHi = high;
  Vars.IFLo = record.CurrentLo = low;
  Vars.FiltersDirty = true;
}

// The audio filter has changed: its edges are the IF filter's, where that one tracks. A lower sideband stands
// upside down on the IF.
void Receiver::FollowFilter() {
  if (Vars.CurrentIFFilterMode != IFFilterMode::Track) return;
  const FilterSettingsRecord& record = FilterRecord();
  switch (Vars.CurrentDemodMode) {
    case DemodMode::USB:
      return TakeIFExtents(Vars.FilterHi, Vars.FilterLo);
    case DemodMode::LSB:
      return TakeIFExtents(-record.CurrentHi, -record.CurrentLo);
    default:
      return TakeIFExtents(record.CurrentHi, -record.CurrentHi);
  }
}

// Another demodulation mode has another record of extents.
void Receiver::FollowDemodMode() {
  if (Vars.CurrentIFFilterMode == IFFilterMode::Manual) {
    const FilterSettingsRecord record = IFFilterRecord();
    TakeIFExtents(record.CurrentHi, record.CurrentLo);
  }
  FollowFilter();
}

void Receiver::SetIFHigh(std::int32_t hertz) {
  Vars.IFHi = IFFilterRecord().CurrentHi = hertz;
  Vars.FiltersDirty = true;
  Changed(ReceiverPart::IFFilter);
}

void Receiver::SetIFLow(std::int32_t hertz) {
  Vars.IFLo = IFFilterRecord().CurrentLo = hertz;
  Vars.FiltersDirty = true;
  Changed(ReceiverPart::IFFilter);
}

}  // namespace quorl
