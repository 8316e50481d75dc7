// What is wrong in the fields of a dialog: a mark at each, and one line for all.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "controls/Controls.h"

namespace quorl {

class FieldFaults {
 public:
  // `line` shows the first fault, and how many more there are.
  explicit FieldFaults(Label& line) : line_(line) {}

  // `text` says for a person what is wrong, and what stays. A field has one fault, the latest; `told` where a
  // box has said it.
  void Mark(Control& field, const std::string& text, bool told = false);
  void Clear(const Control& field);
  void ClearAll();
  // One line for each fault that no box has told.
  std::string Untold() const;
  // Told after each change.
  std::function<void()> OnChange = [] {};
  // The line in its colours, when the panel has been painted.
  void Show();

 private:
  struct Fault {
    Control* Field;
    std::string Text;
    bool Told;
  };

  Label& line_;
  std::vector<Fault> faults_;
};

}  // namespace quorl
