#include "desktop/window/HelpPanel.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <array>

#include "desktop/views/Skin.h"

namespace quorl {

namespace {

struct HelpLine {
  const char* Gesture;  // null for a heading
  const char* Effect;
};

constexpr std::array kLines{
    HelpLine{nullptr, "Frequency"},
    HelpLine{"Pointer on a digit", "chooses the digit that is tuned"},
    HelpLine{"Wheel on a digit", "one step of that digit for each notch"},
    HelpLine{"Click",
             "locks the rate to the digit: the wheel tunes by it over any other; a click on the lock "
             "releases it"},
    HelpLine{"Right click", "menu of the tuning rate"},
    HelpLine{"A or Up, Z or Down", "tune up and down, as long as the key is held"},
    HelpLine{"Left, Right", "the digit to the left, to the right; from the ends to the other end"},
    HelpLine{"Page Up, Page Down", "tune by the step, wherever the pointer is"},
    HelpLine{"with Shift, with Ctrl", "by ten steps, by a tenth of one"},
    HelpLine{nullptr, "Numbers"},
    HelpLine{"Pointer on a number", "makes it the one that wheel and keys turn"},
    HelpLine{"Wheel, A and Z, Up and Down", "one step"},
    HelpLine{"with Shift", "a large step"},
    HelpLine{"with Ctrl", "a small step"},
    HelpLine{"Space or right click", "the value it comes with"},
    HelpLine{"Left, Right",
             "the number before or after: filter, blanker, volume, notch, AGC, IF, BFO, frequency"},
    HelpLine{nullptr, "Scope"},
    HelpLine{"Click, right click", "tunes there; a menu of all that can be shown"},
    HelpLine{"Wheel", "zooms about the pointer, or tunes, as the menu says"},
    HelpLine{"Shift+wheel, middle button", "moves along the band"},
    HelpLine{"Digits", "begin a frequency in kHz, or with M in MHz; Enter tunes, Escape leaves"},
    HelpLine{nullptr, "Recorder"},
    HelpLine{"Space or Enter on a button", "presses it; the keys that follow tune"},
    HelpLine{"Up, Down in the tracks", "plays the track before or after"},
    HelpLine{"Enter, Escape in the timer", "saves the programme; closes the window"},
    HelpLine{nullptr, "Knobs and sliders"},
    HelpLine{"Drag, wheel, arrow keys", "turn them; ten times as far with Shift"},
    HelpLine{nullptr, "Everywhere"},
    HelpLine{"Tab, Shift+Tab", "from control to control"},
    HelpLine{"Space or Enter", "presses a button"},
    HelpLine{"Alt", "shows the letters that press buttons together with it"},
    HelpLine{"M, click on the loudspeaker", "mutes; once more, or turning the volume, ends that"},
    HelpLine{"F1", "this list"},
};

}  // namespace

HelpPanel::HelpPanel(QWidget* window) : QDialog(window) {
  setWindowTitle("QUORLSDR - Keys and gestures");
  setObjectName("frmHelp");
  setAttribute(Qt::WA_DeleteOnClose);
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(24, 16, 24, 16);
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(24);
  grid->setVerticalSpacing(4);
  int row = 0;
  for (const HelpLine& line : kLines) {
    const bool heading = line.Gesture == nullptr;
    auto* left = new QLabel(heading ? QString(line.Effect).toUpper() : QString(line.Gesture));
    left->setFont(heading ? skin::TitleFont() : skin::WordFont(13, true));
    if (heading && row > 0) left->setContentsMargins(0, 12, 0, 0);
    left->setForegroundRole(heading ? QPalette::Link : QPalette::WindowText);
    grid->addWidget(left, row, 0, 1, heading ? 2 : 1);
    if (!heading) {
      auto* right = new QLabel(line.Effect);
      right->setFont(skin::WordFont(13));
      grid->addWidget(right, row, 1);
    }
    ++row;
  }
  rows->addLayout(grid);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
  QObject::connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
  rows->addWidget(buttons);
}

void HelpPanel::ShowOver(QWidget* window) {
  auto* panel = window->findChild<QDialog*>("frmHelp");
  if (!panel) panel = new HelpPanel(window);
  panel->show();
  panel->raise();
  panel->activateWindow();
}

}  // namespace quorl
