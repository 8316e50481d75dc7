#include "ReceiveOptions.h"

#include <array>
#include <functional>
#include <string_view>
#include <vector>

#include "Options.h"
#include "receiver/Receiver.h"

namespace quorl::cli {
namespace {

constexpr std::array<std::string_view, 6> ModeNames = {"am", "usb", "lsb", "drm", "fm", "bc"};
constexpr std::array<std::string_view, 4> AGCNames = {"off", "fast", "normal", "slow"};

constexpr Range EdgeRange = {0, 12000};
constexpr Range BFORange = {-FSampling / 4, FSampling / 4};
constexpr Range IFExtentRange = {0, 6000};
constexpr Range AudioNotchRange = {0, 6000};
constexpr Range IFNotchRange = {-6000, 6000};
constexpr Range NotchWidthRange = {1, 5000};
constexpr Range NBRange = {0, 10000};
constexpr Range VolumeRange = {-10000, 8000};

Band ParseFilter(const std::string& option, const std::string& text) {
  const std::vector<std::string> parts = SplitAtColons(text);
  if (parts.size() != 2) Refuse(option, "'" + text + "' doesn't fit; LO:HI in Hz is needed");
  const Band band = {ParseWhole(option, parts[0], EdgeRange), ParseWhole(option, parts[1], EdgeRange)};
  if (band.Lo >= band.Hi) Refuse(option, "'" + text + "' is empty; LO must lie below HI");
  return band;
}

void ParseIFFilter(const std::string& option, const std::string& text, ReceiveOptions& options) {
  const std::vector<std::string> parts = SplitAtColons(text);
  if (text == "off") {
    options.IFFilter = IFFilterMode::Off;
  } else if (text == "track") {
    options.IFFilter = IFFilterMode::Track;
  } else if (parts.size() == 3 && parts[0] == "man") {
    options.IFFilter = IFFilterMode::Manual;
    options.ManualIFFilter = {ParseWhole(option, parts[1], IFExtentRange),
                              ParseWhole(option, parts[2], IFExtentRange)};
  } else {
    Refuse(option, "'" + text + "' doesn't fit; off, track or man:LO:HI is needed");
  }
}

NotchOptions ParseNotch(const std::string& option, const std::string& text) {
  const std::vector<std::string> parts = SplitAtColons(text);
  const auto width = [&] { return ParseWhole(option, parts.back(), NotchWidthRange); };
  if (parts[0] == "auto" && parts.size() == 2) return {NotchModes::Auto, NotchTypes::Audio, 0, width()};
  if (parts[0] == "audio" && parts.size() == 3) {
    return {NotchModes::Manual, NotchTypes::Audio, ParseWhole(option, parts[1], AudioNotchRange), width()};
  }
  if (parts[0] == "if" && parts.size() == 3) {
    return {NotchModes::Manual, NotchTypes::IF, ParseWhole(option, parts[1], IFNotchRange), width()};
  }
  Refuse(option, "'" + text + "' doesn't fit; audio:CENTRE:WIDTH, if:OFFSET:WIDTH or auto:WIDTH is needed");
}

void AddTuningOptions(CLI::App& command, ReceiveOptions& options) {
  AddChoice(command, "--model", kModelNames, "receiver board, default drt1, or that of an IF recording",
            options.SDRModelNo)
      ->each([&options](const std::string&) { options.ModelNamed = true; });
  AddChoice(command, "--mode", ModeNames, "demodulator, default am", options.DemodMode);
  AddWhole(command, "--filter-mode", {0, FilterModeCount - 1}, "audio filter preset, default 0",
           [&options](int value) { options.FilterMode = value; });
  AddText(command, "--filter", "LO:HI", "audio filter edges in Hz, over the preset's",
          [&options](const std::string& text) { options.Filter = ParseFilter("--filter", text); });
  command
      .add_flag("--low-side,!--high-side", options.LowSideLO,
                "the local oscillator lies below the signal, or above it; default high, or that of an IF "
                "recording")
      ->each([&options](const std::string&) { options.SideNamed = true; });
  AddWhole(command, "--bfo", BFORange, "second oscillator, in Hz from the IF's centre, default 0",
           [&options](int value) { options.BFO = value; });
  AddText(command, "--if-filter", "off|track|man:LO:HI",
          "IF filter: none, after the audio filter, or by extents from the IF's centre; default off",
          [&options](const std::string& text) { ParseIFFilter("--if-filter", text, options); });
}

void AddCleaningOptions(CLI::App& command, ReceiveOptions& options) {
  AddText(command, "--notch", "audio:CENTRE:WIDTH|if:OFFSET:WIDTH|auto:WIDTH",
          "notch in the audio, in the IF, or on the strongest tone; Hz",
          [&options](const std::string& text) { options.Notch = ParseNotch("--notch", text); });
  command.add_flag("--notch-mirror", options.NotchMirror, "pass the notch's band and reject the rest");
  AddWhole(command, "--nb", NBRange, "noise blanker control, default off",
           [&options](int value) { options.NB = value; });
  command.add_flag("--dynamic-filter", options.DynamicFilter, "second audio filter that follows the signal");
  AddChoice(command, "--agc", AGCNames, "automatic gain control, default normal", options.AGCMode);
  AddWhole(
      command, "--volume", VolumeRange,
      "output level control: below -50 hundredths of a decibel, above 1 a gain of 1 + VALUE/1000; default 0",
      [&options](int value) { options.Volume = value; });
}

}  // namespace

void AddInputOptions(CLI::App& command, ReceiveOptions& options) {
  command
      .add_option("INPUT", options.Input,
                  "WAV file, 16-bit PCM, 48000 Hz, one or two channels; - is raw 16-bit from standard input")
      ->required()
      ->type_name("");
  AddWhole(command, "--channels", {1, 2}, "channels of raw input, default 2",
           [&options](int value) { options.Channels = value; });
}

void RefuseChannelsOfFile(const CLI::App& command, const ReceiveOptions& options) {
  if (command.count("--channels") > 0 && options.Input != "-")
    Refuse("--channels", "a WAV file tells its channels itself; INPUT - is needed");
}

void AddReceiveOptions(CLI::App& command, ReceiveOptions& options) {
  AddInputOptions(command, options);
  command
      .add_option("OUTPUT", options.Output,
                  "WAV file to write, 16-bit PCM, 48000 Hz, mono; - is raw 16-bit to standard output")
      ->required()
      ->type_name("");
  AddReceptionOptions(command, options);
}

void AddReceptionOptions(CLI::App& command, ReceiveOptions& options) {
  AddTuningOptions(command, options);
  AddCleaningOptions(command, options);
  command.add_flag("--report", options.Report, "one line of JSON on standard error when done");
}

namespace {

void ApplyIFFilter(const ReceiveOptions& options, Receiver& receiver) {
  if (options.IFFilter == IFFilterMode::Off) return;
  receiver.SwitchIFFilter(true);
  receiver.SetIFFilterMode(options.IFFilter);
  if (options.IFFilter != IFFilterMode::Manual) return;
  receiver.SetIFHigh(options.ManualIFFilter.Hi);
  receiver.SetIFLow(options.ManualIFFilter.Lo);
}

void ApplyNotch(const NotchOptions& notch, bool mirror, Receiver& receiver) {
  receiver.SwitchNotch(true);
  receiver.SetNotchType(notch.Type);
  receiver.SetNotchMode(notch.Mode);
  if (notch.Mode == NotchModes::Manual) receiver.SetNotchCentre(notch.Centre);
  receiver.SetNotchWidth(notch.Width);
  receiver.SetNotchMirror(mirror);
}

}  // namespace

void TakeOrigin(const IFOrigin& origin, ReceiveOptions& options) {
  if (!options.ModelNamed) options.SDRModelNo = origin.Model;
  if (!options.SideNamed) options.LowSideLO = origin.LowSideLO;
}

// The filters come before what is laid over them, as when a panel restores its settings.
void ApplyReceiveOptions(const ReceiveOptions& options, Receiver& receiver) {
  receiver.Vars.SDRModelNo = options.SDRModelNo;
  receiver.SetLowSideLO(options.LowSideLO);
  receiver.SetBFO(options.BFO);
  receiver.SetDemodMode(options.DemodMode);
  receiver.SetFilterMode(options.FilterMode);
  if (options.Filter) receiver.SetFilterEdges(options.Filter->Lo, options.Filter->Hi);
  ApplyIFFilter(options, receiver);
  if (options.Notch) ApplyNotch(*options.Notch, options.NotchMirror, receiver);
  if (options.NB) {
    receiver.SwitchNoiseBlanker(true);
    receiver.SetNoiseBlankerLevel(static_cast<float>(*options.NB));
  }
  if (options.DynamicFilter) receiver.SetDynamicFilter(true);
  if (options.AGCMode == AGCPreset::Off) {
    receiver.SwitchAGC(false);
  } else {
    receiver.SetAGCPreset(options.AGCMode);
    receiver.Agc.FillDelayLine();
  }
  receiver.SetVolume(static_cast<float>(options.Volume));
}

}  // namespace quorl::cli
