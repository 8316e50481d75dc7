// Sound files of any make, and the way from one sample rate to another.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "support/Error.h"

namespace quorl {

// Codes of faults that lie in the file's content. Faults of the system carry its own, positive, number.
struct SoundFault {
  static constexpr int Unknown = -21;  // no sound file, or a coding that nobody here reads
  static constexpr int Damaged = -22;  // ends early, or in the middle of its coding
  static constexpr int Refused = -23;  // channels, rate or length that can't be had
};

// A sound file that is read from its begin to its end. Used by one thread at a time.
class SoundFileReader {
 public:
  virtual ~SoundFileReader() = default;
  virtual int Channels() const = 0;
  virtual int SampleRate() const = 0;  // Hz
  // As the file promises.
  virtual std::int64_t Frames() const = 0;
  // Fills up to `frames` frames of Channels() samples each, full scale being 1.0; returns how many came,
  // fewer only at the end or with `failure` set. Floating-point files may hold any number, even none.
  virtual int Read(float* interleaved, int frames, Failure& failure) = 0;
};

// A sound file that takes its place whole, or not at all.
class SoundFileWriter {
 public:
  virtual ~SoundFileWriter() = default;
  // Interleaved 16-bit samples.
  virtual Failure Write(const std::int16_t* interleaved, int frames) = 0;
  // Everything is where it belongs once this has succeeded. Nothing may be written afterwards.
  virtual Failure Commit() = 0;
};

// One channel from one rate to another.
class RateConverter {
 public:
  virtual ~RateConverter() = default;
  // Puts behind `out` what becomes of `in`. The filter holds some milliseconds back until `last` is true.
  virtual Failure Convert(std::span<const float> in, bool last, std::vector<float>& out) = 0;
};

enum class SoundFileKind { Wav, Flac };

// What a new sound file is: 16 bits, and tags that other programs show. Empty tags are left out.
struct SoundFileForm {
  SoundFileKind Kind = SoundFileKind::Wav;
  int Channels = 1;
  int SampleRate = 48000;  // Hz
  std::string Title, Comment, Date;
};

// Every failure names the file, what is wrong with it and what is needed. Readers, writers and converters may
// outlive this object, and be used beside the event queue's thread.
class SoundFiles {
 public:
  virtual ~SoundFiles() = default;
  // Null with `failure` set where `path` is no sound file that can be read. Pipes can't.
  virtual std::unique_ptr<SoundFileReader> Open(const std::string& path, Failure& failure) const = 0;
  // Over what has that name, once committed; without a Commit nothing is left behind. Null with `failure`
  // set.
  virtual std::unique_ptr<SoundFileWriter> Create(const std::string& path, const SoundFileForm& form,
                                                  Failure& failure) const = 0;
  // From `from` Hz to `to` Hz, no more than 256 times up or down. Null with `failure` set.
  virtual std::unique_ptr<RateConverter> Convert(int from, int to, Failure& failure) const = 0;
};

}  // namespace quorl
