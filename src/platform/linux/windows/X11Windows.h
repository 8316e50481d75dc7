// Windows of other programs on an X desktop, or of those that speak X on another one.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/EventQueue.h"
#include "platform/linux/system/ProgramWindows.h"

namespace quorl {

class X11Display;

// A window belongs to a program that names its process and this machine on it. Window managers follow the
// Inter-Client Communication Conventions Manual and the Extended Window Manager Hints, each as far as it
// does.
class X11Windows : public ProgramWindows {
 public:
  // `queue` outlives the object. The display is that of the environment, looked for at each call.
  explicit X11Windows(EventQueue& queue);

  std::vector<std::string> Environment(WindowWish wish) const override;
  void Wish(int process, WindowWish wish) override;
  void Forget(int process) override;
  Processes::WindowNumber Find(int process) override;
  void Close(Processes::WindowNumber window) override;

 private:
  void Look();

  std::unique_ptr<QueueTimer> looking_;
  int process_ = 0;  // whose window is waited for
  WindowWish wish_ = WindowWish::Focused;
  int looks_ = 0;
};

}  // namespace quorl
