// A frequency typed outright: a digit opens the field, Enter tunes, Escape leaves.
#pragma once

#include "controls/Controls.h"
#include "tuning/Tuner.h"

namespace quorl {

// What can't be tuned to stays there in red, with the reason as tool tip.
class FrequencyEntry {
 public:
  explicit FrequencyEntry(ControlRegistry& registry);

  TextBox txtFrequency;  // seen while it is open

  // Tunes through `tuner`, which must outlive this or be taken away with null.
  void SetTuner(Tuner* tuner);
  bool IsOpen() const { return txtFrequency.Visible(); }
  // The digit of the key opens it; false for other keys.
  bool Open(const Key& key);
  // A key that comes to the panel while it is open.
  void TypeKey(const Key& key);
  void Close();

 private:
  void txtFrequency_KeyDown(const Key& key);
  void Accept();
  void Refuse(const std::string& reason);
  void Welcome();

  Tuner* tuner_ = nullptr;
};

}  // namespace quorl
