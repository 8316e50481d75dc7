// The files that a recording is made of, while it waits to be saved and afterwards.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Files.h"

namespace quorl {

// The name of part `part` (from 1) of a recording that is saved as `target`: "NAME.wav", "NAME-2.wav" ...
std::string PartName(const std::string& target, std::int32_t part);
// Of the names that so many parts take, those that exist already.
std::vector<std::string> TakenNames(const Files& files, const std::string& target, std::int32_t parts);

// The temporary files of one folder, as paths.
class RecordingParts {
 public:
  // `folder` may be empty: the working directory.
  explicit RecordingParts(std::string folder) : folder_(std::move(folder)) {}

  // The file that is written.
  std::string Current() const { return Path("~QUORLWAV.TMP"); }
  // A part that was finished while the recording went on; from 1.
  std::string Finished(std::int32_t part) const;
  std::string Journal() const { return Path("~QUORLWAV.JNL"); }

  // The finished parts that exist, in their order, and behind them the current file where it exists.
  std::vector<std::string> Existing(const Files& files) const;
  // The number of the last finished part that exists; 0 for none.
  std::int32_t LastFinished(const Files& files) const;
  // All that exists, the journal first: it must not meet the next recording's file. The first failure ends
  // it.
  Failure RemoveAll(Files& files) const;

 private:
  std::string Path(const std::string& name) const { return folder_.empty() ? name : folder_ + "/" + name; }
  std::vector<std::int32_t> FinishedNumbers(const Files& files) const;

  std::string folder_;
};

}  // namespace quorl
