// The layout of the program's own recordings: a WAV file of 16-bit samples, and behind it the tuning log.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Files.h"
#include "recorder/files/RecordingLog.h"

namespace quorl {

// Where the samples of an IF recording come from.
struct IFOrigin {
  static constexpr std::int32_t Models = 4;

  std::int32_t Model = 0;  // number of the receiver board, below Models
  bool LowSideLO = true;

  bool operator==(const IFOrigin&) const = default;
};

struct RecordingFormat {
  std::int32_t Rate = 48000;  // frames a second
  std::int32_t Channels = 1;
  std::int32_t Bits = 16;      // 8: the header says so, the samples still take 16
  std::optional<IFOrigin> IF;  // stands in a LIST chunk before the samples

  // Position of the first sample, from 0.
  std::int64_t DataAt() const { return IF ? 80 : 44; }
  // On the disk.
  std::int64_t FrameBytes() const { return std::int64_t{2} * Channels; }

  bool operator==(const RecordingFormat&) const = default;
};

// Mono at one of the deck's rates, or the IF at 48 kHz as it comes from one or two channels.
bool IsRecordingFormat(const RecordingFormat& format);
// The board of an IF recording is one that there is; true for all others.
bool IsBoardKnown(const RecordingFormat& format);

// DataAt() bytes. `frames` in the file, which ends after `fileBytes` (the trailer not counted).
std::string MakeWavHeader(const RecordingFormat& format, std::int64_t fileBytes, std::int64_t frames);

// The fields at their places, unchecked.
struct WavHeader {
  std::uint32_t RiffSize = 0, FormatSize = 0, Rate = 0, BytesPerSecond = 0, DataSize = 0;
  std::uint16_t FormatTag = 0, Channels = 0, BlockAlign = 0, Bits = 0;
  bool HasTags = false;  // "RIFF", "WAVE", "fmt " and "data" stand where they belong
};
// `bytes`: 44 of them.
WavHeader ParseWavHeader(std::string_view bytes);

// What the header of a recording tells, whether the file holds it or not.
struct ToldSamples {
  RecordingFormat Format;
  std::int64_t Bytes = 0;      // of samples on the disk
  std::uint32_t DataSize = 0;  // the header's own number
};
// A header of 8 bits has two sizes by which it is known; a mending that was broken off leaves the one new and
// the other old.
enum class HeaderSizes { Agree, Torn };
// Empty for a file that is no recording of this program, and with `failure` set where it can't be read.
std::optional<ToldSamples> ReadRecordingHeader(OpenFile& file, Failure& failure,
                                               HeaderSizes sizes = HeaderSizes::Agree);

// Where a log of positions in a file of format `from` belongs in a copy of its samples, frame by frame, in a
// file of format `to`; the last record ends one byte later, as that of a recording does.
std::vector<LogRecord> MoveLog(std::vector<LogRecord> log, const RecordingFormat& from,
                               const RecordingFormat& to);

struct Recording {
  RecordingFormat Format;
  std::int64_t FileBytes = 0;
  std::int64_t DataBytes = 0;  // samples in the file
  std::int64_t LogStart = 0;   // where the trailer begins, counted from 1; 0 for none
  std::vector<LogRecord> Log;

  std::int64_t Frames() const { return DataBytes / Format.FrameBytes(); }
};

struct RecordingRead {
  // Empty for a file that is no recording of this program: another program's, or not a sound file at all.
  std::optional<Recording> Own;
  Failure Fault;  // the file can't be read, or is one of ours that is broken
};

// Reads header and log.
RecordingRead ReadRecording(OpenFile& file);

}  // namespace quorl
