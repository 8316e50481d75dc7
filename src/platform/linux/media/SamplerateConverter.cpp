#include "platform/linux/media/SamplerateConverter.h"

#include <array>
#include <string>

namespace quorl {
namespace {

constexpr int kChannels = 1;
// Keeps what it folds or adds more than 100 dB down, below the noise of 16 bits.
constexpr int kQuality = SRC_SINC_MEDIUM_QUALITY;

Failure Told(int error) {
  return Error{SoundFault::Refused,
               std::string("the sample rate can't be converted: ") + src_strerror(error)};
}

}  // namespace

std::unique_ptr<SamplerateConverter> SamplerateConverter::Create(int from, int to, Failure& failure) {
  failure.reset();
  const double ratio = from > 0 ? static_cast<double>(to) / from : 0.0;
  if (src_is_valid_ratio(ratio) == 0) {
    failure = Error{SoundFault::Refused, std::to_string(from) + " Hz can't become " + std::to_string(to) +
                                             " Hz; rates no more than 256 times apart are needed"};
    return nullptr;
  }
  int error = 0;
  SRC_STATE* state = src_new(kQuality, kChannels, &error);
  if (state == nullptr) failure = Told(error);
  return state == nullptr ? nullptr
                          : std::unique_ptr<SamplerateConverter>(new SamplerateConverter(state, ratio));
}

Failure SamplerateConverter::Convert(std::span<const float> in, bool last, std::vector<float>& out) {
  std::array<float, 4096> part;
  SRC_DATA data{};
  data.src_ratio = ratio_;
  data.end_of_input = last ? 1 : 0;
  data.data_out = part.data();
  data.output_frames = static_cast<long>(part.size());
  do {
    data.data_in = in.data();
    data.input_frames = static_cast<long>(in.size());
    if (const int error = src_process(state_.get(), &data); error != 0) return Told(error);
    out.insert(out.end(), part.begin(), part.begin() + data.output_frames_gen);
    in = in.subspan(static_cast<std::size_t>(data.input_frames_used));
  } while (!in.empty() || data.output_frames_gen > 0);
  return {};
}

}  // namespace quorl
