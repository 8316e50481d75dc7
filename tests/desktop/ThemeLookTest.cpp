// What the eye gets in each theme that comes along: every pair of an ink and its ground as they are painted.
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QToolTip>
#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>

#include "DesktopTest.h"
#include "config/ThemeFile.h"
#include "desktop/views/FocusRing.h"
#include "desktop/views/Skin.h"
#include "desktop/window/Application.h"
#include "desktop/window/DialogWindows.h"
#include "desktop/window/PanelWindow.h"

namespace quorl {
namespace {

constexpr int kScale = 4;  // letters have pixels of full ink then

ThemeColours ThemeOf(const std::string& name) {
  std::ifstream file(QUORL_SOURCE_DIR "/data/themes/" + name + ".thm", std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  const ThemeContent theme = ReadTheme(text.str(), {});
  if (const std::string fault = ThemeFault(theme, name); !fault.empty()) throw std::runtime_error(fault);
  return theme.Colours;
}

// The settings of a radio in that theme.
std::string SettingsIn(const ThemeColours& theme) {
  ColourSchemes scheme;
  GivePanelColours(theme, scheme);
  std::string text = "[frmMain]\n";
  for (const ColourSetting& row : kColourSettings)
    text += std::string(row.Key) + "=" + std::to_string(scheme.*row.Field) + "\n";
  return text;
}

QImage PictureOf(QWidget& widget, const QColor& ground) {
  QImage image(widget.size() * kScale, QImage::Format_RGB32);
  image.setDevicePixelRatio(kScale);
  image.fill(ground);
  widget.render(&image, {}, {}, QWidget::DrawChildren);
  return image;
}

// What most of it is.
QColor GroundOf(const QImage& image, const QRect& place) {
  std::map<QRgb, int> counts;
  for (int y = place.top(); y <= place.bottom(); ++y) {
    for (int x = place.left(); x <= place.right(); ++x) ++counts[image.pixel(x, y)];
  }
  const auto most = std::max_element(counts.begin(), counts.end(),
                                     [](const auto& a, const auto& b) { return a.second < b.second; });
  return QColor(most->first);
}

// How far the letters in `place` (device pixels) stand out from what they stand on.
double LettersIn(const QImage& image, const QRect& place) {
  const QColor ground = GroundOf(image, place);
  double most = 1;
  for (int y = place.top(); y <= place.bottom(); ++y) {
    for (int x = place.left(); x <= place.right(); ++x)
      most = std::max(most, skin::Contrast(image.pixelColor(x, y), ground));
  }
  return most;
}

double LettersIn(const QImage& image) {
  constexpr int kEdge = 3 * kScale;
  return LettersIn(image, image.rect().adjusted(kEdge, kEdge, -kEdge, -kEdge));
}

class ThemeLookTest : public DesktopTest, public testing::WithParamInterface<const char*> {
 protected:
  // The whole radio, started in that theme, which the windows take from it.
  class Panel : public test::FrameRig {
   public:
    explicit Panel(const std::string& settings) : FrameRig(settings) {
      if (!Start()) throw std::runtime_error("the radio does not start");
    }
  };

  ThemeLookTest() {
    ColourSchemes scheme;
    GivePanelColours(theme, scheme);
    ApplyColours(scheme);
    for (const auto& dialog : dialogs) windows.push_back(dialog.get());
    Settle();
    for (QWidget* each : windows) each->grab();  // laid out
  }
  ~ThemeLookTest() override {
    ApplyColours(ColourSchemes());
    Settle();
  }

  skin::Tones Tones() const { return skin::Tones(palette); }
  double TextLeast() const { return GetParam() == std::string("High contrast") ? 7.0 : 4.5; }
  // Names of views whose letters, or edges, stand out too little.
  void CheckLetters(View& view) {
    if (view.width() < 8 || view.height() < 8) return;
    const bool off = !view.isEnabled() || view.Shown().Faded();
    const double letters = LettersIn(PictureOf(view, Tones().Card()));
    EXPECT_GE(letters, off ? 3.0 : TextLeast()) << view.Shown().Name() << (off ? " (off)" : "");
  }
  void CheckEdge(QWidget& widget, const std::string& name) {
    const QImage image = PictureOf(widget, Tones().Card());
    const QColor edge = image.pixelColor(image.width() / 2, kScale / 2);
    EXPECT_GE(skin::Contrast(edge, Tones().Card()), 3.0) << name;
  }

  ThemeColours theme = ThemeOf(GetParam());
  QPalette palette = [this] {
    ColourSchemes scheme;
    GivePanelColours(theme, scheme);
    return skin::PaletteOf(scheme);
  }();
  Panel panel{SettingsIn(theme)};
  PanelWindow window{panel.Registry(), {}};
  std::vector<std::unique_ptr<QWidget>> dialogs =
      MakeDialogWindows(panel.Registry(), [](const std::string&) {});
  std::vector<QWidget*> windows{&window};
};

TEST_P(ThemeLookTest, EveryWordCanBeRead) {
  window.SetDisplaySize(DisplaySize::Full);
  window.Clock().Flush();
  for (const char* name : {"chkNB", "chkNotchOn", "chkNotchAuto"}) {
    auto& box = panel.Get<CheckBox>(name);
    box.SetValue(!box.Value());
  }
  int words = 0;
  for (QWidget* each : windows) {
    for (QWidget* widget : each->findChildren<QWidget*>()) {
      auto* view = dynamic_cast<View*>(widget);
      const bool isWord = dynamic_cast<FaceView*>(widget) || dynamic_cast<LabelView*>(widget) ||
                          dynamic_cast<ChoiceView*>(widget) || dynamic_cast<MessageView*>(widget) ||
                          dynamic_cast<CardView*>(widget);
      const bool isSign = dynamic_cast<TransportView*>(widget) || dynamic_cast<LoudspeakerView*>(widget);
      if (!view || !isWord || isSign || !view->Shown().Visible()) continue;
      view->resize(view->sizeHint().expandedTo(view->size()));
      view->TakeOver();
      if (view->Shown().Text().empty()) continue;
      CheckLetters(*view);
      ++words;
    }
  }
  EXPECT_GT(words, 150);
  auto& meter = *window.findChild<QWidget*>("picSmeter");
  const QImage picture = PictureOf(meter, Tones().Card());
  for (const QRect& line : {QRect(0, 0, 60, 14), QRect(meter.width() - 120, 0, 120, 14),
                            QRect(0, meter.height() - 16, meter.width(), 14)})
    EXPECT_GE(LettersIn(picture, {line.topLeft() * kScale, line.size() * kScale}), TextLeast());
  EXPECT_GE(LettersIn(PictureOf(*window.findChild<QWidget*>("picFreqDisp"), Tones().Card())), TextLeast());
}

TEST_P(ThemeLookTest, EveryControlStandsOutFromItsCard) {
  int edges = 0;
  for (QWidget* each : windows) {
    for (QWidget* widget : each->findChildren<QWidget*>()) {
      auto* view = dynamic_cast<View*>(widget);
      if (!view) continue;
      view->TakeOver();
      if (!view->Shown().Visible() || !view->isEnabled() || view->Shown().Faded()) continue;
      if (dynamic_cast<LoudspeakerView*>(widget) || dynamic_cast<SliderView*>(widget) ||
          dynamic_cast<KnobView*>(widget) || dynamic_cast<TransportView*>(widget)) {
        const QImage picture = PictureOf(*view, Tones().Card());
        EXPECT_GE(LettersIn(picture, picture.rect()), 3.0) << view->Shown().Name();
      }
      const bool isBox = dynamic_cast<FaceView*>(widget) || dynamic_cast<ChoiceView*>(widget);
      if (!isBox || dynamic_cast<LoudspeakerView*>(widget)) continue;
      CheckEdge(*view, view->Shown().Name());
      ++edges;
    }
  }
  EXPECT_GT(edges, 80);
  for (auto* line : window.findChildren<QLineEdit*>()) CheckEdge(*line, "a line to type into");

  window.show();
  Settle();
  window.PressKey(Key{Key::Control, {}}, true);
  ASSERT_TRUE(window.FocusByKeyboard("chkNB"));
  const FocusRing* ring = nullptr;
  for (const QObject* child : window.children()) {
    if (const auto* found = dynamic_cast<const FocusRing*>(child)) ring = found;
  }
  ASSERT_TRUE(ring && ring->isVisible());
  const QColor ink = window.grab().toImage().pixelColor(ring->geometry().center().x(), ring->y() + 1);
  for (const QColor& ground : {Tones().Card(), Tones().Ground(), Tones().Face()})
    EXPECT_GE(skin::Contrast(ink, ground), 3.0);
  EXPECT_EQ(ink.rgb(), Tones().Accent().rgb());
}

TEST_P(ThemeLookTest, AButtonCanBeReadInEachOfItsStates) {
  const skin::Tones tones = Tones();
  for (const Colour number : {kSelectedColour, kUnselectedColour, 0x00FF00U, 0x00C000U, 0x0000FFU, 0x0000C0U,
                              theme[Swatch::Label], 0U, 0xFFFFFFU, 0x808080U}) {
    for (int bits = 0; bits < 16; ++bits) {
      const skin::ButtonState state{(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0};
      const skin::ButtonLook look = skin::LookOf(tones, tones.HueOf(number), state);
      EXPECT_GE(skin::Contrast(look.Ink, look.Face), state.Off ? 3.0 : TextLeast()) << number << " " << bits;
      const bool rests = !(state.Hovered || state.Pressed || state.Off);
      if (rests) {
        EXPECT_GE(skin::Contrast(look.Edge, tones.Card()), 3.0) << number << " " << bits;
      }
    }
  }
}

TEST_P(ThemeLookTest, MenusBoxesHintsAndListsFollow) {
  QMenu menu;
  menu.addAction("Wideband");
  menu.addAction("Narrow")->setEnabled(false);
  menu.addAction("Chosen");
  menu.setActiveAction(menu.actions().back());
  menu.ensurePolished();
  menu.resize(menu.sizeHint());
  const QImage items = PictureOf(menu, Qt::magenta);
  for (QAction* action : menu.actions()) {
    const QRect place = menu.actionGeometry(action).adjusted(12, 4, -12, -4);
    EXPECT_GE(LettersIn(items, {place.topLeft() * kScale, place.size() * kScale}),
              action->isEnabled() ? TextLeast() : 3.0)
        << action->text().toStdString();
  }
  EXPECT_EQ(items.pixelColor(3 * kScale, 20 * kScale), Tones().Card());

  QMessageBox box(QMessageBox::Question, "QUORLSDR", "Replace it?", QMessageBox::Yes | QMessageBox::No,
                  &window);
  box.ensurePolished();
  box.adjustSize();
  for (QPushButton* button : box.findChildren<QPushButton*>()) {
    const QImage face = PictureOf(*button, Tones().Ground());
    EXPECT_GE(LettersIn(face), TextLeast());
    EXPECT_GE(skin::Contrast(face.pixelColor(face.width() / 2, kScale / 2), Tones().Ground()), 3.0);
  }
  const auto words = box.findChildren<QLabel*>();
  ASSERT_FALSE(words.empty());
  EXPECT_GE(skin::Contrast(words.back()->palette().color(QPalette::WindowText),
                           box.palette().color(QPalette::Window)),
            TextLeast());

  window.show();
  QToolTip::showText(QPoint(10, 10), "Measure levels", &window);
  for (QWidget* tip : QApplication::topLevelWidgets()) {
    if (tip->inherits("QTipLabel")) {
      EXPECT_GE(LettersIn(PictureOf(*tip, Qt::magenta)), TextLeast());
    }
  }
  QToolTip::hideText();

  QListWidget list;
  list.addItems({"first", "second"});
  list.setCurrentRow(1);
  list.resize(120, 60);
  const QImage lines = PictureOf(list, Tones().Card());
  for (int row = 0; row < 2; ++row) {
    const QRect place =
        list.visualItemRect(list.item(row)).translated(list.viewport()->pos()).adjusted(2, 2, -40, -2);
    EXPECT_GE(LettersIn(lines, {place.topLeft() * kScale, place.size() * kScale}), TextLeast()) << row;
  }
}

TEST_P(ThemeLookTest, WhatIsOpenFollowsAtOnce) {
  window.show();
  QLineEdit* line = window.findChild<QLineEdit*>();
  ASSERT_TRUE(line);
  Settle();
  ColourSchemes paper;
  paper.SDRBackgroundColour = 0xE0F0FF;
  ApplyColours(paper);
  Settle();
  const skin::Tones tones(line->palette());
  const QImage image = PictureOf(*line, Qt::magenta);
  EXPECT_EQ(GroundOf(image, image.rect().adjusted(12, 12, -12, -12)),
            skin::Tones(QApplication::palette()).Face());
  const QImage all = window.grab().toImage();
  EXPECT_EQ(all.pixelColor(2, 2), skin::Tones(QApplication::palette()).Ground());
}

INSTANTIATE_TEST_SUITE_P(Themes, ThemeLookTest,
                         testing::Values("Night", "Daylight", "High contrast", "Green phosphor"),
                         [](const auto& tested) {
                           std::string name = tested.param;
                           std::erase(name, ' ');
                           return name;
                         });

}  // namespace
}  // namespace quorl
