// The main panel as a window.
#pragma once

#include <QWidget>
#include <functional>
#include <memory>

#include "desktop/views/Binder.h"
#include "desktop/views/RefreshClock.h"

namespace quorl {

class FocusRing;

enum class DisplaySize { Extended, Standard, Compact, Full };

// Shows the controls of a registry, which outlives it. A control "frmMain", where there is one, is the window
// itself: its keys are those that no other control took, its MouseMove is the pointer between the cards, its
// text is the title.
class PanelWindow : public QWidget {
 public:
  struct Events {
    std::function<void(const std::string&)> Log = {};
    // The user wants to close the window; false keeps it open.
    std::function<bool()> Closing = {};
    // The window has come onto a screen, or is hidden or minimised.
    std::function<void(bool)> Seen = {};
    // The user has chosen another size, in pixels; the height is that of the sizes other than the compact
    // one.
    std::function<void(int width, int height)> Sized = {};
  };

  PanelWindow(const ControlRegistry& registry, Events events);
  ~PanelWindow() override;

  // Follows the pressed button of optDisplaySize by itself; this is for panels without one.
  void SetDisplaySize(DisplaySize size);
  // Takes the title bar off or puts it back; the panel keeps its size and its place.
  void ShowCaption(bool shown);
  // The keyboard goes to the view of that control, as if the pointer had come to it.
  void GiveFocus(const std::string& control);
  // The keyboard comes to that view as the Tab key brings it; false where it takes no keys at present.
  bool FocusByKeyboard(const std::string& control);
  // A key goes down or up where the keyboard's focus is.
  void PressKey(const Key& key, bool down);
  // Whether that control has a view in the regions that the display size shows.
  bool IsShown(const std::string& control) const;
  RefreshClock& Clock() { return clock_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void Build();
  QWidget* MakeLists();
  void ShowRegion(QWidget& region, bool shown);
  void FollowControls();
  void UpdateAwake();
  bool TakePanelKey(const QObject* receiver, const QKeyEvent& key);
  void ShowMnemonics(bool show);

  Events events_;
  RefreshClock clock_;
  Binder bind_;
  const ControlRegistry& registry_;
  Control* form_;
  DisplaySize size_ = DisplaySize::Standard;
  int heightBefore_ = 0;  // the compact size took over
  QWidget* body_;
  FocusRing* ring_;
  QWidget* receiver_ = nullptr;
  QWidget* scope_ = nullptr;
  QWidget* column_ = nullptr;
  QWidget* lists_ = nullptr;
  QWidget* recorder_ = nullptr;
  QWidget* setup_ = nullptr;
};

}  // namespace quorl
