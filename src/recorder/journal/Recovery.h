// A recording that nobody saved: finds what a program left behind that died or was ended, and makes it whole.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/FileWorker.h"
#include "platform/files/PostedFiles.h"
#include "recorder/files/RecordingHeader.h"
#include "recorder/journal/RecordingParts.h"

namespace quorl {

struct FoundRecording {
  // In the order of the parts, each with header, samples and log as a saved one. Empty: nothing lies there
  // that is worth to be offered.
  std::vector<std::string> Files;
  RecordingFormat Format;
  std::int64_t Frames = 0;    // of all files; where they need mending: afterwards
  bool NeedsMending = false;  // none of the files may be touched before
  bool LogLost = false;       // no sound journal was there: a file's length alone told where it ends
  Failure Fault;              // can't be read, or can't be mended now; all is left for a next try
};

// Both want the folder for themselves: the caller holds its lock.
FoundRecording FindRecording(const Files& files, const RecordingParts& parts);
// Writes what the journal holds to its place, mends headers and logs, and removes the journal in the end.
// Ended in any way before, it can be begun again.
FoundRecording MendRecording(Files& files, const RecordingParts& parts);

// The same beside the event queue's thread. `files` and `worker` outlive it.
class Recovery {
 public:
  using Done = std::function<void(FoundRecording)>;

  Recovery(Files& files, FileWorker& worker, RecordingParts parts)
      : files_(files), parts_(std::move(parts)), calls_(worker) {}

  void Find(Done done);
  void Mend(Done done);

 private:
  Files& files_;
  RecordingParts parts_;
  FileCalls calls_;
};

}  // namespace quorl
