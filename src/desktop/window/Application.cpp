#include "desktop/window/Application.h"

#include <QApplication>
#include <QStyleFactory>

#include "desktop/views/Skin.h"
#include "desktop/views/ViewAccess.h"

namespace quorl {

void PrepareApplication(QApplication& application) {
  QApplication::setApplicationName("quorlsdr");
  QApplication::setDesktopFileName("quorlsdr");
  skin::LoadFonts();
  QApplication::setStyle(QStyleFactory::create("Fusion"));
  ApplyColours(ColourSchemes());
  QApplication::setFont(skin::WordFont(13));
  application.setStyleSheet(skin::StyleSheet());
  InstallViewAccess();
}

void ApplyColours(const ColourSchemes& colours) {
  QPalette palette = skin::PaletteOf(colours);
  if (palette != QApplication::palette()) QApplication::setPalette(palette);
}

}  // namespace quorl
