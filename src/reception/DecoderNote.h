// A line in DRM mode that says what stands between the IF and the decoder.
#pragma once

#include "interaction/PanelContext.h"

namespace quorl {

class DecoderNote {
 public:
  explicit DecoderNote(const PanelContext& context);

  Label lblDecoder;

  // The decoder has the sound card to itself: nothing of this program is in its way.
  void SetSoundReleased(bool released);

 private:
  void Show();
  std::string Between() const;

  PanelContext context_;
  bool released_ = false;
  Listening listening_;
};

}  // namespace quorl
