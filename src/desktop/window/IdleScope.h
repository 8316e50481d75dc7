// The scope's place while nothing is on display: an empty graticule.
#pragma once

#include <QWidget>

namespace quorl {

class IdleScope : public QWidget {
 public:
  IdleScope();

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace quorl
