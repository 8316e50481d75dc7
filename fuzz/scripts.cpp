// Any text at all as a script over a small panel: it ends, with a known code, and a fault names its line.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "Demand.h"
#include "controls/Controls.h"
#include "platform/virtual/VirtualEventQueue.h"
#include "scripting/ScriptRunner.h"

namespace {

// Waits end at once, however long a script asks for.
class HastyQueue : public quorl::VirtualEventQueue {
 public:
  explicit HastyQueue(quorl::VirtualClock& clock) : VirtualEventQueue(clock), clock_(clock) {}
  void Wait(std::chrono::milliseconds) override {
    clock_.Advance(std::chrono::hours(1000));
    Yield();
  }

 private:
  quorl::VirtualClock& clock_;
};

struct Panel {
  quorl::ControlRegistry Registry;
  quorl::Picture Form{Registry, "frmMain"};
  quorl::CheckBox Box{Registry, "chkNB"};
  quorl::OptionGroup Group{Registry, "optMode", 5};
  quorl::Slider Level{Registry, "sldNB"};
  quorl::Label Digits{Registry, "lbl7Seg(0)"};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  quorl::VirtualClock clock;
  HastyQueue queue(clock);
  Panel panel;
  std::ostringstream output;
  quorl::ScriptRunner runner(panel.Registry, queue, clock, {}, output);
  const int code = runner.Run(text, "fuzz.txt");
  quorl::fuzz::Demand(code >= quorl::ScriptRunner::kPassed && code <= quorl::ScriptRunner::kScriptFault);
  quorl::fuzz::Demand((code == quorl::ScriptRunner::kPassed) ||
                      output.str().find("fuzz.txt:") != std::string::npos);
  return 0;
}
