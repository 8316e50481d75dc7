// Any bytes at all as a WAV file: either a reader that keeps its promises, or one line that tells why not.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Demand.h"
#include "platform/virtual/VirtualFiles.h"
#include "recorder/files/WavReader.h"

namespace {

using quorl::fuzz::Demand;
using quorl::fuzz::DemandOneLine;

// Reads to the end; the frames that came, or -1 where the file was refused.
std::int64_t ReadAll(const quorl::VirtualFiles& files, std::size_t bytes) {
  quorl::Failure failure;
  auto reader = quorl::WavReader::Open(files, "fuzz.wav", {}, failure);
  if (!reader) {
    DemandOneLine(failure);
    return -1;
  }
  Demand(!failure && (reader->Channels() == 1 || reader->Channels() == 2));
  std::vector<std::int16_t> block(static_cast<std::size_t>(512 * reader->Channels()));
  std::int64_t frames = 0;
  for (int got = 512; got == 512;) {
    got = reader->Read(block.data(), 512, failure);
    Demand(got >= 0 && got <= 512);
    frames += got;
  }
  Demand(frames * 2 * reader->Channels() <= static_cast<std::int64_t>(bytes));
  if (failure) {
    DemandOneLine(failure);
  } else {
    Demand(frames == *reader->Frames());
  }
  return failure ? -1 : frames;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  quorl::VirtualFiles file, pipe;
  file.Put("fuzz.wav", bytes);
  pipe.PutPipe("fuzz.wav", bytes);
  Demand(ReadAll(file, size) == ReadAll(pipe, size));
  return 0;
}
