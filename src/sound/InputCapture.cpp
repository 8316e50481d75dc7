#include "sound/InputCapture.h"

#include "dsp/kernel/VectorKernel.h"

namespace quorl {

namespace {

constexpr SoundFormat kCaptureFormat;  // the radio's: what it gets is what is measured
constexpr int kPieces = 2;
constexpr int kPieceBytes = InputCapture::kBlockSamples * 2 * static_cast<int>(sizeof(std::int16_t));

}  // namespace

Failure InputCapture::Open(int device) {
  Close();
  Failure failure;
  auto buffer = system_.CreateCaptureBuffer(
      device, kCaptureFormat, kPieces * kPieceBytes, [this](int block) { Take(block); }, failure);
  if (!buffer) return failure;
  buffer->SetNotificationPositions({{kPieceBytes - 1, 0}, {2 * kPieceBytes - 1, 1}});
  failure = buffer->Start();
  if (!failure) buffer_ = std::move(buffer);
  return failure;
}

void InputCapture::Take(int block) {
  if (!buffer_) return;
  buffer_->Read(block * kPieceBytes, kPieceBytes, samples_.data());
  DeInterlace_16_2(samples_.data(), left_.data(), right_.data(), 2 * kBlockSamples);
  onBlock_(left_.data(), right_.data(), kBlockSamples);
}

}  // namespace quorl
