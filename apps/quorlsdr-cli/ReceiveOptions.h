// What a reception is set to, out of the options of the command line.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <optional>
#include <string>

#include "recorder/files/RecordingHeader.h"
#include "state/PublicConstants.h"

namespace quorl {
class Receiver;
}

namespace quorl::cli {

// A band by its edges, Hz.
struct Band {
  std::int32_t Lo = 0;
  std::int32_t Hi = 0;
};

struct NotchOptions {
  std::int32_t Mode = NotchModes::Manual;
  std::int32_t Type = NotchTypes::Audio;
  std::int32_t Centre = 0;  // Hz; for the IF the offset from its centre; unused in automatic mode
  std::int32_t Width = 0;   // Hz
};

struct ReceiveOptions {
  std::string Input;   // "-" is raw samples from standard input
  std::string Output;  // "-" is raw samples to standard output
  int Channels = 2;    // of raw input
  std::int32_t SDRModelNo = SDRModel::DRT1;
  std::int32_t DemodMode = quorl::DemodMode::AM;
  std::int32_t FilterMode = 0;
  std::optional<Band> Filter;  // over the edges of FilterMode
  bool LowSideLO = false;
  bool ModelNamed = false, SideNamed = false;  // by the user: hold against what an IF recording tells
  std::int32_t BFO = 0;                        // Hz, as the BFO control shows it
  std::int32_t IFFilter = IFFilterMode::Off;
  Band ManualIFFilter;                       // extents from the IF's centre
  std::int32_t AGCMode = AGCPreset::Normal;  // Off switches the AGC off
  std::optional<NotchOptions> Notch;
  bool NotchMirror = false;
  std::optional<std::int32_t> NB;  // control value of the noise blanker
  bool DynamicFilter = false;
  std::int32_t Volume = 0;  // control value
  bool Report = false;
};

// Tells the parser of `command` about every option; parsing fills `options`, which must outlive it.
void AddReceiveOptions(CLI::App& command, ReceiveOptions& options);
// Only those that say where the recording comes from, and what is wrong with --channels for a file.
void AddInputOptions(CLI::App& command, ReceiveOptions& options);
void RefuseChannelsOfFile(const CLI::App& command, const ReceiveOptions& options);
// Only those that say how to receive, not what from where to where.
void AddReceptionOptions(CLI::App& command, ReceiveOptions& options);

// Board and side of an IF recording, where the user has named no other.
void TakeOrigin(const IFOrigin& origin, ReceiveOptions& options);

// Sets a receiver to the options.
void ApplyReceiveOptions(const ReceiveOptions& options, Receiver& receiver);

}  // namespace quorl::cli
