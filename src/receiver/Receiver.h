// One receiver without a panel: state, filters, chain, AGC and pump, put together and ready for blocks.
#pragma once

#include <cstdint>
#include <functional>

#include "config/SettingsTable.h"
#include "controls/Event.h"
#include "dsp/chain/VariableFilters.h"
#include "dsp/kernel/KernelSettings.h"
#include "platform/Clock.h"
#include "receiver/BlockPump.h"
#include "receiver/BlockRecorder.h"
#include "receiver/SoundOutput.h"

namespace quorl {

// What a change of the receiver is about.
enum class ReceiverPart { Side, BFO, Mode, Filter, IFFilter, Notch, NoiseBlanker, AGC, Volume };

// Whoever changes the receiver (a panel, the command line, a memory, a remote client) does it through the
// routines below, and whoever shows it listens to Changed. They mark the filters, and the next Housekeeping
// rebuilds them. A mode, type or preset that doesn't exist changes nothing.
class Receiver {
 public:
  // All arguments are used as long as the receiver lives. `yield` delivers waiting events once. Blocks and
  // routines come after Initialise.
  Receiver(const Clock& clock, SoundOutput& sound, BlockRecorder& recorder, std::function<void()> yield);
  // Makes filters and transform and takes every part's first values: both steps, or one after the other.
  void Initialise();
  void InitialiseFilters();
  void InitialiseFFTReal();
  // `early` is read before the board's chain is made.
  void AddSettings(SettingsTable& table, SettingsTable& early);

  KernelSettings Settings;
  PublicVars Vars;
  AnalyserTap Tap;
  FilterBank Filters;
  AGC Agc;
  ReceiveChain Chain;
  VariableFilters FilterMaker;
  BeatMeter Beat;      // off unless somebody reads it
  Profiler Profiler1;  // times the pump
  BlockPump Pump;

  // Told after each change, once for each part of the receiver that it was about.
  Event<ReceiverPart> Changed;
  // The mode is another one now: sound card and decoder are handed over on entering and leaving DRM. Comes
  // after the filters of the new mode are switched, before they are filled in. May be empty.
  std::function<void()> OnModeChange;
  bool MuteAFOnDRM = false;  // silence while an external decoder listens

  // The local oscillator lies below the signal; the BFO's offset and a notch on the IF follow.
  void SetLowSideLO(bool low);
  void SetBFO(std::int32_t hertz);

  // DemodMode. Leaving DRM takes the audio filter's own edges again.
  void SetDemodMode(std::int32_t mode);
  // MuteAFOnDRM, in force at once.
  void SetMuteAFOnDRM(bool mute);
  // What leaves here goes to a decoder, not to the loudspeaker: DRM mode is not silenced.
  void SetOutputForDecoder(bool forDecoder);

  // 0 to 4: takes that filter with its edges and its music.
  void SetFilterMode(std::int32_t mode);
  // Moves an edge, Hz; the filter's own edges stay what they are.
  void SetFilterLow(std::int32_t hertz);
  void SetFilterHigh(std::int32_t hertz);
  // Both edges, Hz, as those that the filter goes back to; the dynamic filter starts from them.
  void SetFilterEdges(std::int32_t low, std::int32_t high);
  // Opens the low edge to kMusicLow, or brings it back to where it was.
  static constexpr std::int32_t kMusicLow = 50;
  void SetMusic(bool on);
  // Switched off, the edges go back to the filter's own.
  void SetDynamicFilter(bool on);

  // The main switch. Until it has been on for the first time (IFFilterActive clear), SetIFFilterMode does
  // nothing; from then on the two follow each other.
  void SwitchIFFilter(bool on);
  void SetIFFilterMode(std::int32_t mode);  // IFFilterMode
  // Extents from the IF's centre, Hz, of the mode in force.
  void SetIFHigh(std::int32_t hertz);
  void SetIFLow(std::int32_t hertz);

  // While the notch is off, mode, type and mirror stay what they are.
  void SwitchNotch(bool on);
  void SetNotchMode(std::int32_t mode);  // NotchModes; Auto brings the notch to the audio
  void SetNotchType(std::int32_t type);  // NotchTypes; not in mode Auto
  void SetNotchMirror(bool mirror);
  // Hz: a pitch (audio), or an offset from the IF's centre, counted downwards in frequency on the air.
  void SetNotchCentre(std::int32_t hertz);
  void SetNotchWidth(std::int32_t hertz);

  void SwitchNoiseBlanker(bool on);
  void SetNoiseBlankerLevel(float level);  // 0 to 10000

  void SwitchAGC(bool on);
  void SetAGCPreset(std::int32_t mode);  // AGCPreset; not while the AGC is off
  // Times of the preset in force: tenths of a second, tenths of a millisecond.
  void SetAGCDelay(float tenthsOfSecond);
  void SetAGCRamp(float tenthsOfMillisecond);
  // The user's preset with these times, whether the AGC is on or off.
  void TakeUserAGC(float tenthsOfSecond, float tenthsOfMillisecond);
  void SetVolume(float value);  // -10000 to 8000, as AGC::SetVolume takes it

  // The board that the samples come from, where they come from another one than the radio's own; and its
  // side.
  void SetBoard(std::int32_t SDRModelNo, bool lowSideLO);
  // All that the listener has set, and the board: everything but the volume.
  struct Reception {
    PublicVars Vars;
    bool IFFilter = false, Notch = false;  // these filters run
  };
  Reception Keep() const;
  void Take(const Reception& reception);

  // What follows each block: waits for a block in work, rebuilds filters, tracks the notch. True where
  // PeakFrequency is new.
  bool Housekeeping();

  // Mean of the last blocks' levels before demodulation, in 16-bit units.
  float MeanSignalLevel() const;

 private:
  FilterSettingsRecord& FilterRecord();
  FilterSettingsRecord& IFFilterRecord();
  void PlaceBFO(std::int32_t hertz);
  void TakeFilter();
  void TakeMusic(bool on);
  void KeepEdges();
  void FollowFilter();
  void FollowDemodMode();
  void MuteForDecoder();
  void TakeIFExtents(std::int32_t high, std::int32_t low);
  void PlaceNotch();

  bool outputForDecoder_ = false;
};

}  // namespace quorl
