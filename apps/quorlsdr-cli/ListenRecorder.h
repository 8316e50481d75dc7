// What `listen` writes: the audio, and the captured IF.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ListenTimes.h"
#include "platform/Machine.h"
#include "receiver/BlockRecorder.h"
#include "shared/AudioFile.h"
#include "shared/TuningLog.h"

namespace quorl::cli {

struct ListenFiles {
  std::string Output;    // WAV file of what is heard
  std::string RecordIF;  // IF recording
  bool Log = false;      // a tuning log behind the audio; an IF recording has one anyway
};

// Stands in the recorder's place of the pump. Takes blocks while it is time for them, until there are enough.
// What was taken is written beside the signal's thread.
class ListenRecorder final : public BlockRecorder {
 public:
  // A log without a file, for what can carry none.
  static std::string Misfit(const ListenFiles& files);
  // Everything outlives the recorder.
  ListenRecorder(Machine& machine, const ListenFiles& files) : machine_(machine), wanted_(files) {}

  // The files begin. `origin`: of the IF.
  Failure Open(const IFOrigin& origin);
  // `mostBlocks` 0 for no limit.
  void SetLimits(const ListenTimes& times, std::int64_t mostBlocks);

  // Before the first block, and after each: `tuned` is in dHz.
  void Housekeeping(std::int32_t tuned);
  // A block of audio on its way to the sound card.
  void TakeAudio(const std::int16_t* block, std::int32_t attenuation);
  std::int64_t Blocks() const { return blocks_; }  // taken so far, those without a file too
  // It is time for the radio to play, so that it has settled when the recording begins.
  bool IsDue() const;
  bool IsDone() const;
  // Ends the files that hold something; what went wrong first.
  Failure Close();

  bool IsPlaying() const override { return false; }
  std::int32_t PlayerMode() const override;
  void GetNextSamples(std::int16_t*, std::int32_t) override {}
  std::int16_t AddSamples(const std::int16_t*, std::int32_t) override { return 0; }
  bool IsIF() const override { return true; }
  const std::int16_t* GetNextIF(std::int16_t* left, std::int32_t) override { return left; }
  std::int16_t AddIF(const std::int16_t* left, const std::int16_t* right, std::int32_t n) override;

 private:
  double Now() const;
  bool HasEnough() const { return mostBlocks_ > 0 && blocks_ >= mostBlocks_; }
  static Failure End(PostedWav& file, const std::vector<LogRecord>* log);

  Machine& machine_;
  ListenFiles wanted_;
  std::unique_ptr<AudioFile> audio_;
  std::unique_ptr<PostedWav> captured_;
  std::optional<TuningLog> audioLog_, capturedLog_;
  ListenTimes times_;
  std::int64_t mostBlocks_ = 0, blocks_ = 0;
  bool open_ = false;  // it is time
};

}  // namespace quorl::cli
