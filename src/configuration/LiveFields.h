// Fields of a dialog that show what the radio has, and go on following it until a person changes them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "controls/Controls.h"

namespace quorl {

class LiveFields {
 public:
  // `live` tells what the radio has: ticked, the text, or the place in list and group. Fields live as long as
  // this object.
  void Add(CheckBox& box, std::function<bool()> live);
  void Add(TextBox& box, std::function<std::string()> live);
  void Add(ComboBox& box, std::function<int()> live);
  void Add(OptionGroup& group, std::function<int()> live);

  // Shows what the radio has, changed or not: all fields, or the one.
  void Load();
  void Load(const void* field);
  // The same for those that nobody has changed since.
  void Follow();
  bool IsTouched(const void* field) const;
  // What shows the radio's state has been taken: it follows again.
  void Settle();

 private:
  struct Field {
    const void* Which;
    std::function<std::string()> Shown, Live;
    std::function<void(const std::string&)> Show;
    std::string Loaded;
  };

  static void Show(Field& field);

  std::vector<Field> fields_;
};

}  // namespace quorl
