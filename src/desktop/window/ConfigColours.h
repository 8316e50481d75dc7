// The page of the configuration's window on which colours are chosen.
#pragma once

#include <QWidget>

#include "desktop/views/Binder.h"

namespace quorl {

// For the window that lends its binder, which outlives the page.
class ConfigColours : public QWidget {
 public:
  explicit ConfigColours(Binder& bind);

 private:
  QWidget* MakeSwatches(std::size_t first, std::size_t end, const QString& title, const char* defaults);

  Binder& bind_;
};

}  // namespace quorl
