#include "tuning/clsAD9951.h"

#include <array>

#include "support/ScopedFlag.h"
#include "support/Text.h"

namespace quorl {
namespace {

constexpr double kClockAtCreation = 360096000.0;  // dHz

// Register addresses, AD9951 data sheet.
constexpr std::uint8_t kCfr1 = 0x00, kCfr2 = 0x01, kFtw0 = 0x04;

// SDIO takes input only and the SYNC_CLK output is off, the rest at its power-up values.
constexpr std::array<std::uint8_t, 5> kWriteCfr1 = {kCfr1, 0x00, 0x00, 0x02, 0x02};

constexpr std::uint8_t kMultiplier8 = 0x40;  // reference multiplier, bits 7 to 3
constexpr std::uint8_t kVcoHighRange = 0x04;
constexpr std::uint8_t kChargePump = 0x03;
constexpr double kVcoRangeLimit = 200.0;

}  // namespace

clsAD9951::clsAD9951(SettingsStore& settings, Dialogs& dialogs)
    : Oscillator(settings, dialogs, "clsAD9951", kClockAtCreation) {}

Failure clsAD9951::Initialise() {
  if (CMDOutActive) {
    return {};
  }
  const ScopedFlag active(CMDOutActive);
  wordSent_.reset();
  SendCommand(kWriteCfr1);
  const std::uint8_t range = ClkIn() > kVcoRangeLimit ? kVcoHighRange : std::uint8_t{0};
  const std::array<std::uint8_t, 4> writeCfr2 = {
      kCfr2, 0x00, 0x00, static_cast<std::uint8_t>(kMultiplier8 | range | kChargePump)};
  SendCommand(writeCfr2);
  return {};
}

void clsAD9951::Refresh() {
  const std::vector<std::uint8_t> command = lastCommand_;
  const std::optional<std::int32_t> word = lastWord_;
  if (SendCommand(command) && word) wordSent_ = word;
}

void clsAD9951::SendTuningWord(std::int32_t word) {
  CurrentTuningWord = word;
  const auto bits = static_cast<std::uint32_t>(word);
  const std::array<std::uint8_t, 5> command = {
      kFtw0, static_cast<std::uint8_t>(bits >> 24), static_cast<std::uint8_t>(bits >> 16),
      static_cast<std::uint8_t>(bits >> 8), static_cast<std::uint8_t>(bits)};
  if (SendCommand(command)) wordSent_ = word;
  lastCommand_.assign(command.begin(), command.end());
  lastWord_ = word;
}

// Whether it went out whole.
bool clsAD9951::SendCommand(std::span<const std::uint8_t> command) {
  const auto handler = IFHandler;
  if (sending_ || !handler) return false;
  const ScopedFlag sending(sending_);
  handler->IOUPD(0);
  for (const std::uint8_t byte : command) handler->Send(byte);
  handler->IOUPD(1);
  return handler->IsOpen();
}

}  // namespace quorl
