#include "tuning/TuneStepTexts.h"

#include "support/NumberPicture.h"

namespace quorl {

namespace {

std::string StepText(double dHz) {
  const auto text = [](double value) { return FormatPicture(value, "0.####"); };
  const auto trimmed = [&](double value) {
    std::string digits = text(value);
    while (digits.find('.') != std::string::npos && (digits.back() == '0' || digits.back() == '.'))
      digits.pop_back();
    return digits;
  };
  if (dHz >= 10000.0) return trimmed(dHz / 10000.0) + " KHz";
  if (dHz >= 10.0) return trimmed(dHz / 10.0) + " Hz";
  return trimmed(dHz) + " dHz";
}

}  // namespace

std::array<std::string, TuneSteps.size()> TuneStepTexts() {
  std::array<std::string, TuneSteps.size()> texts;
  for (std::size_t i = 0; i < texts.size(); ++i) texts[i] = StepText(TuneSteps[i]);
  return texts;
}

}  // namespace quorl
