// Any bytes as a recording: a header and a log that keep to the file, or one line that tells why not; what is
// read can be written and read again.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Demand.h"
#include "platform/virtual/VirtualFiles.h"
#include "recorder/files/RecordingHeader.h"

namespace {

using quorl::fuzz::Demand;
using quorl::fuzz::DemandOneLine;

quorl::RecordingRead Read(const std::string& bytes) {
  quorl::VirtualFiles files;
  files.Put("fuzz.wav", bytes);
  quorl::Failure failure;
  const auto file = files.Open("fuzz.wav", quorl::OpenMode::Read, failure);
  return quorl::ReadRecording(*file);
}

void DemandWithin(const quorl::Recording& recording, std::int64_t size) {
  const std::int64_t end = recording.Format.DataAt() + recording.DataBytes;
  Demand(recording.FileBytes == size && recording.DataBytes >= 0 && end <= size);
  Demand(recording.DataBytes % recording.Format.FrameBytes() == 0);
  Demand(recording.LogStart >= 0 && recording.LogStart <= size);
  Demand(recording.LogStart > 0 || recording.Log.empty());
  for (const quorl::LogRecord& record : recording.Log) {
    const int found = quorl::FindRecord(recording.Log, record.Start);
    Demand(record.End < record.Start || (found >= 0 && found < std::ssize(recording.Log)));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const quorl::RecordingRead read = Read({reinterpret_cast<const char*>(data), size});
  Demand(!read.Own || !read.Fault);
  if (read.Fault) DemandOneLine(read.Fault);
  if (!read.Own) return 0;
  const quorl::Recording& recording = *read.Own;
  DemandWithin(recording, static_cast<std::int64_t>(size));

  std::vector<quorl::LogRecord> tuned;
  for (const quorl::LogRecord& record : recording.Log) {
    if (record.Freq > 0) tuned.push_back(record);
  }
  const std::int64_t end = recording.Format.DataAt() + recording.DataBytes;
  const std::string samples(static_cast<std::size_t>(recording.DataBytes), 'x');
  const quorl::RecordingRead again = Read(quorl::MakeWavHeader(recording.Format, end, recording.Frames()) +
                                          samples + quorl::MakeTrailer(tuned));
  Demand(again.Own && again.Own->Format == recording.Format && again.Own->DataBytes == recording.DataBytes);
  Demand(again.Own->LogStart == end + 1 && again.Own->Log == tuned);
  return 0;
}
