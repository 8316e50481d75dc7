// A value of a control that tells the control when it changes.
#pragma once

#include <utility>

namespace quorl {

class Control;

// Assigning the value that is already there does nothing. Otherwise the view hears of it (Control::Changed)
// before the assignment returns.
template <typename T>
class Property {
 public:
  explicit Property(Control& owner, T start = T()) : owner_(owner), value_(std::move(start)) {}
  Property(const Property&) = delete;
  Property& operator=(const Property& other) { return *this = other.value_; }
  Property& operator=(T value);

  operator const T&() const { return value_; }
  const T& operator()() const { return value_; }

 private:
  Control& owner_;
  T value_;
};

}  // namespace quorl
