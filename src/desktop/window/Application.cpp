#include "desktop/window/Application.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QIcon>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QStyle>
#include <QStyleFactory>

#include "desktop/views/Skin.h"
#include "desktop/views/ViewAccess.h"

static void InitIconResource() {
  Q_INIT_RESOURCE(icons);
}

namespace quorl {

namespace {

QIcon ApplicationIcon() {
  InitIconResource();
  QIcon icon;
  for (const int size : {16, 24, 32, 48, 64, 128}) icon.addFile(QString(":/icons/%1.png").arg(size));
  return icon;
}

}  // namespace

void PrepareApplication() {
  QApplication::setApplicationName("quorlsdr");
  QApplication::setDesktopFileName("org.quorlsdr.quorlsdr");
  QApplication::setWindowIcon(ApplicationIcon());
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
