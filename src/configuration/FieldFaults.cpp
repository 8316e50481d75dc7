#include "configuration/FieldFaults.h"

#include "config/Inks.h"

namespace quorl {
void FieldFaults::Mark(Control& field, const std::string& text, bool told) {
  Clear(field);
  faults_.push_back({&field, text, told});
  field.Fault = text;
  Show();
}

void FieldFaults::Clear(const Control& field) {
  std::erase_if(faults_, [&field](const Fault& fault) {
    if (fault.Field != &field) return false;
    fault.Field->Fault = std::string();
    return true;
  });
  Show();
}

void FieldFaults::ClearAll() {
  for (const Fault& fault : faults_) fault.Field->Fault = std::string();
  faults_.clear();
  Show();
}

std::string FieldFaults::Untold() const {
  std::string lines;
  for (const Fault& fault : faults_) {
    if (!fault.Told) lines += (lines.empty() ? "" : "\n") + fault.Text;
  }
  return lines;
}

void FieldFaults::Show() {
  const std::size_t more = faults_.empty() ? 0 : faults_.size() - 1;
  const std::string first = faults_.empty() ? std::string() : faults_.front().Text;
  line_.Caption = more == 0 ? first : first + " (and " + std::to_string(more) + " more)";
  line_.ForeColour = faults_.empty() ? kNoColour : kCautionInk;
  OnChange();
}

}  // namespace quorl
