// All controls of a program by their names: how scripts, tests and the view find them.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace quorl {

class Control;

class ControlRegistry {
 public:
  // Null where there is none. Letter case and blanks don't count: "optmode( 1 )" is "optMode(1)".
  Control* Find(const std::string& name) const;
  // In order of their names.
  std::vector<Control*> All() const;

 private:
  friend class Control;
  void Add(Control& control);
  void Remove(const Control& control);

  std::map<std::string, Control*> byName_;
};

}  // namespace quorl
