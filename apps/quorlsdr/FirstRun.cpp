#include "FirstRun.h"

namespace quorl {

FirstRun::FirstRun(Machine& machine, SettingsStore& store, std::function<void(const std::string&)> log)
    : machine_(machine), store_(store), log_(std::move(log)) {}

bool FirstRun::IsDue(bool wanted) {
  if (store_.Load()) return false;  // the radio tells it
  return wanted || ReadKnownBoard(store_) == KnownBoard::Unasked;
}

FirstRun::Next FirstRun::Known() const {
  return ReadKnownBoard(store_) == KnownBoard::None ? Next::Demo : Next::Radio;
}

void FirstRun::Ask(std::function<void()> onAnswered) {
  onAnswered_ = std::move(onAnswered);
  serial_ = std::make_unique<clsDDSSerialIF>(machine_.Serial, machine_.Queue, machine_.Boxes, store_);
  serial_->Name = "DDSSerialIF";
  serial_->RestoreSettings();
  page_ = std::make_unique<FirstStart>(
      registry_, FirstStartMachine{machine_.Sound, machine_.Serial,
                                   [this]() -> const clsDDSSerialIF& { return *serial_; }, machine_.Queue});
  page_->OnDone = [this](const FirstStartAnswers& answers) { Store(answers); };
  page_->OnSkip = [this] {
    StoreKnownBoard(store_, KnownBoard::Later);
    StoreClock(store_, 0);  // the board that the radio takes when nobody says
    Answer(Next::Radio);
  };
  machine_.Sound.OnDeviceLost([](const Error&) {});  // the level says so
  window_ = std::make_unique<FirstStartWindow>(registry_, log_);
  page_->Open(ReadAnswers(store_));
}

void FirstRun::Store(const FirstStartAnswers& answers) {
  StoreAnswers(store_, answers);
  Answer(answers.SDRModelNo == FirstStartAnswers::kNoBoard ? Next::Demo : Next::NewRadio);
}

void FirstRun::Answer(Next next) {
  answered_ = next;
  fault_ = store_.Save();
  onAnswered_();
}

}  // namespace quorl
