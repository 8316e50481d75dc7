#include "remote/RigctlAnswer.h"

namespace quorl {

void RigctlAnswer::Head(std::string_view name, std::string_view parameters) {
  if (!HasNames()) return;
  answers_.append(name).append(1, ':');
  if (!parameters.empty()) answers_.append(1, ' ').append(parameters);
  answers_ += separator_;
}

void RigctlAnswer::Value(std::string_view name, std::string_view text) {
  hasValues_ = true;
  if (HasNames() && !name.empty()) answers_.append(name).append(": ");
  answers_.append(text).append(1, HasNames() ? separator_ : '\n');
}

void RigctlAnswer::End(RigctlCode code) {
  if (!HasNames() && hasValues_ && code == RigctlCode::Done) return;
  answers_.append("RPRT ").append(std::to_string(static_cast<int>(code))).append(1, '\n');
}

void RigctlAnswer::EndBare() {
  if (HasNames()) answers_.back() = '\n';
}

}  // namespace quorl
