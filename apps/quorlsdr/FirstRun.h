// What the radio is to start from, asked before there is a receiver.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "configuration/FirstStart.h"
#include "controls/ControlRegistry.h"
#include "desktop/window/FirstStartWindow.h"
#include "platform/Machine.h"

namespace quorl {

class FirstRun {
 public:
  // NewRadio: its board has just been chosen. Both outlive the run; lines for the log go to `log`.
  enum class Next { Radio, NewRadio, Demo };
  FirstRun(Machine& machine, SettingsStore& store, std::function<void(const std::string&)> log);

  // Reads the settings. Whether the page is due: always where it is `wanted`, unless another program has
  // them.
  bool IsDue(bool wanted);
  // What follows where it is not.
  Next Known() const;

  // Shows the page. `onAnswered` is told when it has closed.
  void Ask(std::function<void()> onAnswered);
  // What has been answered, once it is stored; nothing before.
  const std::optional<Next>& Answered() const { return answered_; }
  // The settings' file could not be written.
  const Failure& Fault() const { return fault_; }

  ControlRegistry& Controls() { return registry_; }
  FirstStartWindow& Window() { return *window_; }

 private:
  void Store(const FirstStartAnswers& answers);
  void Answer(Next next);

  Machine& machine_;
  SettingsStore& store_;
  std::function<void(const std::string&)> log_;
  ControlRegistry registry_;
  std::unique_ptr<clsDDSSerialIF> serial_;
  std::unique_ptr<FirstStart> page_;
  std::unique_ptr<FirstStartWindow> window_;
  std::function<void()> onAnswered_;
  std::optional<Next> answered_;
  Failure fault_;
};

}  // namespace quorl
