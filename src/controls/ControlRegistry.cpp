#include "controls/ControlRegistry.h"

#include <cctype>
#include <stdexcept>

#include "controls/Control.h"

namespace quorl {

namespace {

std::string KeyOf(const std::string& name) {
  std::string key;
  for (const char c : name) {
    if (c != ' ') key += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return key;
}

}  // namespace

Control* ControlRegistry::Find(const std::string& name) const {
  const auto found = byName_.find(KeyOf(name));
  return found == byName_.end() ? nullptr : found->second;
}

std::vector<Control*> ControlRegistry::All() const {
  std::vector<Control*> all;
  all.reserve(byName_.size());
  for (const auto& [key, control] : byName_) all.push_back(control);
  return all;
}

void ControlRegistry::Add(Control& control) {
  if (!byName_.emplace(KeyOf(control.Name()), &control).second) {
    throw std::logic_error("two controls are called " + control.Name());
  }
}

void ControlRegistry::Remove(const Control& control) {
  byName_.erase(KeyOf(control.Name()));
}

}  // namespace quorl
