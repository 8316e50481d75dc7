#include "tuning/clsAD9835.h"

#include <array>

#include "support/CheckedMath.h"
#include "support/Product.h"
#include "support/ScopedFlag.h"
#include "support/Text.h"

namespace quorl {
namespace {

constexpr double kClkInAtCreation = 5000000.0;  // Hz
constexpr char kUsualClkIn[] = "50000000";      // Hz

// Command words, AD9835 data sheet: bits 15 to 12 the command, 11 to 8 the address.
constexpr std::uint16_t kSleepResetClear = 0xF800;
constexpr std::uint16_t kDeferLowWord = 0x3000, kWriteLowWord = 0x2100;
constexpr std::uint16_t kDeferHighWord = 0x3200, kWriteHighWord = 0x2300;
constexpr std::uint16_t kSelectFreq0 = 0x8000;
constexpr std::uint16_t kRun = 0xC000;

}  // namespace

clsAD9835::clsAD9835(SettingsStore& settings, Dialogs& dialogs)
    : Oscillator(settings, dialogs, "clsAD9835", kClkInAtCreation * 10) {
  SetClkIn(kClkInAtCreation);
  if (const auto hertz = ParseDouble(settings_.GetSetting(Name, NumberText(ClkIn()), kUsualClkIn))) {
    SetClkIn(*hertz);
  }
}

Failure clsAD9835::Initialise() {
  if (CMDOutActive) {
    return {};
  }
  const ScopedFlag active(CMDOutActive);
  wordSent_.reset();
  auto failure = RestoreClock();
  MaxFreq = ToInt32(ClkIn() * 10 / 2).value_or(MaxFreq);
  return failure;
}

void clsAD9835::Refresh() {
  const std::vector<std::uint8_t> command = lastCommand_;
  SendCommand(command);
}

void clsAD9835::SendTuningWord(std::int32_t word) {
  const auto handler = IFHandler;
  if (!handler) return;
  const auto bits = static_cast<std::uint32_t>(word);
  const auto with = [bits](std::uint16_t command, int shift) {
    return static_cast<std::uint16_t>(command | ((bits >> shift) & 0xFF));
  };
  const std::array<std::uint16_t, 7> words = {kSleepResetClear,
                                              with(kDeferLowWord, 0),
                                              with(kWriteLowWord, 8),
                                              with(kDeferHighWord, 16),
                                              with(kWriteHighWord, 24),
                                              kSelectFreq0,
                                              kRun};

  const ScopedFlag sending(sending_);
  for (const std::uint16_t each : words) {
    handler->IOUPD(0);
    handler->Out8(static_cast<std::uint8_t>(each >> 8));
    handler->Out8(static_cast<std::uint8_t>(each));
    handler->IOUPD(1);
  }
  CurrentTuningWord = word;
  if (handler->IsOpen()) wordSent_ = word;
}

void clsAD9835::SendCommand(const std::vector<std::uint8_t>& command) {
  if (sending_) return;
  const ScopedFlag sending(sending_);
  const auto handler = IFHandler;
  if (!handler) {
    dialogs_.ShowMessage({.Text = "Set IFHandler Object in clsAD9951 to an object to handle the Interface",
                          .Title = kProductName});
    return;
  }
  lastCommand_ = command;
  handler->IOUPD(0);
  for (const std::uint8_t byte : command) handler->Send(byte);
  handler->IOUPD(1);
}

}  // namespace quorl
