// Sounds of other makes on their way in, tracks on their way out: one at a time, beside the sound.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/SoundFiles.h"
#include "platform/files/PostedJob.h"
#include "recorder/clsWavFile.h"
#include "recorder/files/TrackExport.h"

namespace quorl {

class Conversions {
 public:
  // `media` null: nothing can be converted. All outlives it.
  Conversions(const WavFileMachine& machine, const SoundFiles* media, std::string folder);
  // A recording made of another sound goes with its maker.
  ~Conversions();

  std::function<void()> Changed = [] {};
  std::function<void(const Error&)> Failed = [](const Error&) {};
  // `line`: what has been written, for a person.
  std::function<void(const std::string& line)> Exported = [](const std::string&) {};

  bool CanConvert() const { return media_ != nullptr; }
  // `done` gets the recording that `path` has become, for as long as nothing else is imported.
  void Import(const std::string& path, std::function<void(const std::string& recording)> done);
  void Export(TrackExportOrder order);
  // Ends what is under way; nobody is told.
  void Stop();
  bool IsRunning() const { return job_.IsRunning(); }
  // What is under way, and how far it is.
  std::string State() const;

 private:
  void Start(std::shared_ptr<FileJob> job, const std::string& what, std::function<void()> done);

  WavFileMachine machine_;
  const SoundFiles* media_;
  std::string imported_;  // path of the recording
  PostedJob job_;
  std::string what_;
  double progress_ = 0.0;
};

// Beside a recording, the folder that its tracks go to: "/music/tour.wav" gives "/music/tour tracks".
std::string TrackFolder(const std::string& recording);

}  // namespace quorl
