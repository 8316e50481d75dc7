// Any bytes at all as a WAV file: either a reader that keeps its promises, or one line that tells why not.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "recorder/WavReader.h"

namespace {

// A stream that can't seek, as a pipe.
class PipeBuffer : public std::stringbuf {
 public:
  using std::stringbuf::stringbuf;

 protected:
  pos_type seekoff(off_type, std::ios_base::seekdir, std::ios_base::openmode) override { return -1; }
  pos_type seekpos(pos_type, std::ios_base::openmode) override { return -1; }
};

class PipeStream : public std::istream {
 public:
  explicit PipeStream(const std::string& bytes) : std::istream(nullptr), buffer_(bytes, std::ios::in) {
    rdbuf(&buffer_);
  }

 private:
  PipeBuffer buffer_;
};

void Demand(bool holds) {
  if (!holds) std::abort();
}

void DemandOneLine(const quorl::Failure& failure) {
  Demand(failure && failure->Code != 0 && !failure->Text.empty());
  Demand(failure->Text.find('\n') == std::string::npos);
}

// Reads to the end; the frames that came, or -1 where the file was refused.
std::int64_t ReadAll(std::unique_ptr<std::istream> in, std::size_t bytes) {
  quorl::Failure failure;
  auto reader = quorl::WavReader::Open(std::move(in), "fuzz.wav", {}, failure);
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
  const std::int64_t fromFile = ReadAll(std::make_unique<std::istringstream>(bytes), size);
  const std::int64_t fromPipe = ReadAll(std::make_unique<PipeStream>(bytes), size);
  Demand(fromFile == fromPipe);
  return 0;
}
