#include "recorder/RecoveryOffer.h"

#include "support/NumberPicture.h"
#include "support/Product.h"

namespace quorl {
namespace {

std::string LengthText(const FoundRecording& found) {
  const double seconds = static_cast<double>(found.Frames) / found.Format.Rate;
  return seconds < 120.0 ? FormatPicture(seconds, "0") + " seconds"
                         : FormatPicture(seconds / 60.0, "#,##0") + " minutes";
}

}  // namespace

RecoveryOffer::RecoveryOffer(clsWavFile& deck, const WavFileMachine& machine, const std::string& folder)
    : deck_(deck), machine_(machine), parts_(folder), recovery_(machine.Storage, machine.Worker, parts_) {}

void RecoveryOffer::Look() {
  if (parts_.Existing(machine_.Storage).empty() && !machine_.Storage.Exists(parts_.Journal())) return;
  if (!deck_.HoldFolder()) return;
  state_ = State::Looking;
  recovery_.Find([this](const FoundRecording& found) { Found(found); });
}

// What was refused is there until a new recording has taken its place.
bool RecoveryOffer::IsOpen() const {
  return state_ != State::None && (state_ != State::Left || deck_.IsLeftBehind());
}

void RecoveryOffer::Take() {
  if (state_ == State::Asking || (state_ == State::Left && deck_.IsLeftBehind() && deck_.HoldFolder()))
    Mend();
}

void RecoveryOffer::Mend() {
  state_ = State::Mending;
  recovery_.Mend([this](const FoundRecording& mended) { Mended(mended); });
}

void RecoveryOffer::Tell(const Error& fault) {
  Log(fault.Text);
  machine_.Boxes.ShowMessage({.Text = fault.Text, .Title = kProductName, .Icon = MessageIcon::Warning});
}

bool RecoveryOffer::Asks(const FoundRecording& found) {
  return machine_.Boxes.ShowMessage(
             {.Text =
                  "A recording of " + LengthText(found) +
                  " was left behind without being saved. Do you want to keep it ?\nNo leaves it where it is, "
                  "and asks again at the next start.",
              .Title = kProductName,
              .Icon = MessageIcon::Question,
              .Buttons = MessageButtons::YesNo}) == MessageAnswer::Yes;
}

// Somebody who records meanwhile has had the question from the deck; an answer that comes after the timer's
// hour decides nothing any more.
void RecoveryOffer::Found(const FoundRecording& found) {
  state_ = State::None;
  if (deck_.IsUnsaved() || deck_.IsBusy()) return;
  if (found.Fault || found.Files.empty()) {
    deck_.LeaveFolder(found.Fault.has_value());
    if (found.Fault) Tell(*found.Fault);
    return;
  }
  state_ = State::Asking;
  const bool wanted = Asks(found);
  if (state_ != State::Asking) return;
  if (wanted && !deck_.IsUnsaved()) return Mend();
  state_ = State::Left;
  deck_.LeaveFolder(true);
}

void RecoveryOffer::Mended(const FoundRecording& found) {
  state_ = State::None;
  if (found.Fault) {
    deck_.LeaveFolder(true);
    Tell(*found.Fault);
    return;
  }
  if (!deck_.Adopt()) return;
  Log("A recording of " + LengthText(found) + " that was left behind is on the deck again" +
      (found.LogLost ? ", without the log of its tuning" : ""));
  OnAdopted();
}

}  // namespace quorl
