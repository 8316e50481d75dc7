#include "desktop/window/Application.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QStyle>
#include <QStyleFactory>

#include "desktop/views/Skin.h"
#include "desktop/views/ViewAccess.h"

namespace quorl {

void PrepareApplication() {
  QApplication::setApplicationName("quorlsdr");
  QApplication::setDesktopFileName("quorlsdr");
  // Otherwise a style sheet keeps a new palette from all but windows.
  QCoreApplication::setAttribute(Qt::AA_UseStyleSheetPropagationInWidgetStyles);
  skin::LoadFonts();
  QApplication::setStyle(QStyleFactory::create("Fusion"));
  qApp->setStyleSheet(skin::StyleSheet());
  ApplyColours(ColourSchemes());
  QApplication::setFont(skin::WordFont(13));
  InstallViewAccess();
}

namespace {

// Whether the style sheet may have a rule for it: it keeps what this has made of the palette's roles. Setting
// the sheet anew would do, but for all widgets, and cost several times the rest.
bool HasRules(const QWidget& widget) {
  return qobject_cast<const QLineEdit*>(&widget) || qobject_cast<const QAbstractScrollArea*>(&widget) ||
         qobject_cast<const QScrollBar*>(&widget) || qobject_cast<const QPushButton*>(&widget) ||
         qobject_cast<const QMenu*>(&widget);
}

}  // namespace

void ApplyColours(const ColourSchemes& colours) {
  const QPalette palette = skin::PaletteOf(colours);
  if (palette == QApplication::palette()) return;
  QApplication::setPalette(palette);
  for (QWidget* widget : QApplication::allWidgets()) {
    if (HasRules(*widget)) widget->style()->polish(widget);
  }
}

}  // namespace quorl
