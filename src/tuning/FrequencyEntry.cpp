#include "tuning/FrequencyEntry.h"

#include "config/Inks.h"
#include "support/Rounding.h"
#include "tuning/FrequencyText.h"

namespace quorl {

namespace {

constexpr const char* kHowTo = "7205 is kHz, 7.205M is MHz, 7205000Hz is Hz; Enter tunes, Escape leaves";

bool IsPlain(const Key& key) {
  return !key.With.Ctrl && !key.With.Alt;
}
bool IsDigit(const Key& key) {
  return IsPlain(key) && key.Code >= '0' && key.Code <= '9';
}
bool IsLetter(const Key& key) {
  return IsPlain(key) && key.Code >= 'A' && key.Code <= 'Z';
}

}  // namespace

FrequencyEntry::FrequencyEntry(ControlRegistry& registry) : txtFrequency(registry, "txtFrequency") {
  txtFrequency.Visible = false;
  txtFrequency.AccessibleName = "Frequency to tune to";
  txtFrequency.Change = [this] { Welcome(); };
  txtFrequency.KeyDown = [this](const Key& key) { txtFrequency_KeyDown(key); };
  txtFrequency.LostFocus = [this] { Close(); };
  Welcome();
}

void FrequencyEntry::SetTuner(Tuner* tuner) {
  tuner_ = tuner;
  if (tuner_ == nullptr) Close();
}

void FrequencyEntry::Welcome() {
  txtFrequency.ForeColour = kNoColour;
  txtFrequency.ToolTip = std::string(kHowTo);
}

bool FrequencyEntry::Open(const Key& key) {
  if (tuner_ == nullptr || !IsDigit(key) || key.With.Shift) return false;
  txtFrequency.SetValue(std::string(1, static_cast<char>(key.Code)));
  Welcome();
  txtFrequency.Visible = true;
  return true;
}

void FrequencyEntry::Close() {
  txtFrequency.Visible = false;
  txtFrequency.SetValue({});
}

void FrequencyEntry::TypeKey(const Key& key) {
  const std::string& text = txtFrequency.Value();
  if (IsDigit(key) || IsLetter(key)) {
    txtFrequency.SetValue(text + static_cast<char>(key.Code));
  } else if (key.Code == Key::Backspace) {
    txtFrequency.SetValue(text.substr(0, text.empty() ? 0 : text.size() - 1));
  } else {
    txtFrequency_KeyDown(key);
  }
}

void FrequencyEntry::txtFrequency_KeyDown(const Key& key) {
  if (key.Code == Key::Enter) Accept();
  if (key.Code == Key::Escape) Close();
}

void FrequencyEntry::Accept() {
  if (tuner_ == nullptr || !IsOpen()) return;
  const std::optional<double> hertz = ParseFrequency(txtFrequency.Value());
  if (!hertz) {
    Refuse(std::string("That is no frequency: ") + kHowTo);
  } else if (*hertz * 10.0 > tuner_->Highest()) {
    Refuse(TuningLimitText(tuner_->Highest()));
  } else {
    Close();
    tuner_->MoveTo(RoundHalfEven(*hertz * 10.0));
  }
}

void FrequencyEntry::Refuse(const std::string& reason) {
  txtFrequency.ForeColour = kWrongInk;
  txtFrequency.ToolTip = reason;
}

}  // namespace quorl
