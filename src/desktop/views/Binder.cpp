#include "desktop/views/Binder.h"

#include <QCursor>
#include <QMenu>

#include "desktop/views/Skin.h"

namespace quorl {

Binder::Binder(const ControlRegistry& registry, RefreshClock& clock, Logger log)
    : registry_(registry), clock_(clock), log_(std::move(log)) {}

FaceView* Binder::Button(const std::string& name) {
  auto* control = Find<CommandButton>(name);
  return control ? new FaceView(clock_, *control) : nullptr;
}

FaceView* Binder::Toggle(const std::string& name) {
  auto* control = Find<CheckBox>(name);
  return control ? new FaceView(clock_, *control) : nullptr;
}

TickView* Binder::Tick(const std::string& name) {
  auto* control = Find<CheckBox>(name);
  return control ? new TickView(clock_, *control) : nullptr;
}

FaceView* Binder::Loudspeaker(const std::string& name) {
  auto* control = Find<CheckBox>(name);
  return control ? new LoudspeakerView(clock_, *control) : nullptr;
}

FaceView* Binder::Option(const std::string& name) {
  auto* control = Find<OptionButton>(name);
  return control ? new FaceView(clock_, *control) : nullptr;
}

std::vector<FaceView*> Binder::Options(const std::string& name, int count) {
  std::vector<FaceView*> views;
  for (int i = 0; i < count; ++i) {
    if (FaceView* view = Option(IndexedName(name, i))) views.push_back(view);
  }
  for (FaceView* view : views) view->SetGroup(views);
  return views;
}

LabelView* Binder::Word(const std::string& name, const QString& widest, int pixels) {
  auto* control = Find<Label>(name);
  return control ? new LabelView(clock_, *control, LabelStyle::Word, widest, pixels) : nullptr;
}

LabelView* Binder::Value(const std::string& name, const QString& widest, int pixels) {
  auto* control = Find<Label>(name);
  return control ? new LabelView(clock_, *control, LabelStyle::Value, widest, pixels) : nullptr;
}

LabelView* Binder::Reading(const std::string& name, const QString& widest, int pixels) {
  auto* control = Find<Label>(name);
  return control ? new LabelView(clock_, *control, LabelStyle::Reading, widest, pixels) : nullptr;
}

MessageView* Binder::Message(const std::string& name, int width) {
  auto* control = Find<Label>(name);
  return control ? new MessageView(clock_, *control, width) : nullptr;
}

AdviceView* Binder::Advice(const std::string& name, int lines) {
  auto* control = Find<Label>(name);
  return control ? new AdviceView(clock_, *control, lines) : nullptr;
}

LevelBarView* Binder::Level(const std::string& name) {
  auto* control = Find<LevelBar>(name);
  return control ? new LevelBarView(clock_, *control) : nullptr;
}

KnobView* Binder::Knob(const std::string& name, int diameter) {
  auto* control = Find<Dial>(name);
  return control ? new KnobView(clock_, *control, diameter) : nullptr;
}

SliderView* Binder::Slide(const std::string& name, int width) {
  auto* control = Find<Slider>(name);
  return control ? new SliderView(clock_, *control, width) : nullptr;
}

SeekView* Binder::Seek(const std::string& name, int width) {
  auto* control = Find<MarkedSlider>(name);
  return control ? new SeekView(clock_, *control, width) : nullptr;
}

TransportView* Binder::Transport(const std::string& name, TransportSign sign) {
  auto* control = Find<LatchButton>(name);
  return control ? new TransportView(clock_, *control, sign) : nullptr;
}

LampView* Binder::Lamp(const std::string& name) {
  auto* control = Find<Picture>(name);
  return control ? new LampView(clock_, *control) : nullptr;
}

FocusRestView* Binder::FocusRest(const std::string& name) {
  auto* control = Find<Picture>(name);
  return control ? new FocusRestView(clock_, *control) : nullptr;
}

ChoiceView* Binder::Choice(const std::string& name, int width) {
  auto* control = Find<ComboBox>(name);
  return control ? new ChoiceView(clock_, *control, width) : nullptr;
}

PopupListView* Binder::PopupList(const std::string& name, QWidget* anchor) {
  auto* control = Find<PopupBox>(name);
  return control && anchor ? new PopupListView(clock_, *control, anchor) : nullptr;
}

NoteView* Binder::Note(const std::string& name, QWidget* anchor) {
  auto* control = Find<Label>(name);
  return control && anchor ? new NoteView(clock_, *control, anchor) : nullptr;
}

ListView* Binder::List(const std::string& name) {
  auto* control = Find<ListBox>(name);
  return control ? new ListView(clock_, *control) : nullptr;
}

TextView* Binder::Text(const std::string& name, int width) {
  auto* control = Find<TextBox>(name);
  return control ? new TextView(clock_, *control, width) : nullptr;
}

SwatchView* Binder::Swatch(const std::string& name) {
  auto* control = Find<Picture>(name);
  return control ? new SwatchView(clock_, *control) : nullptr;
}

SymbolView* Binder::Sign(const std::string& name, Symbol symbol) {
  auto* control = Find<Picture>(name);
  return control ? new SymbolView(clock_, *control, symbol) : nullptr;
}

FrequencyView* Binder::Frequency(const std::string& surface, const std::string& digits) {
  std::array<Label*, FrequencyView::kDigits> labels{};
  for (int i = 0; i < FrequencyView::kDigits; ++i) {
    labels[static_cast<std::size_t>(i)] = Find<Label>(IndexedName(digits, i));
  }
  auto* control = Find<FrequencyDisplay>(surface);
  return control ? new FrequencyView(clock_, *control, labels, Find<Label>(digits + "Top")) : nullptr;
}

SMeterView* Binder::SMeter(const std::string& surface, const std::string& elements, int count,
                           const std::string& reading) {
  std::vector<Control*> bar;
  for (int i = 0; i < count; ++i) {
    if (auto* element = Find<Control>(IndexedName(elements, i))) bar.push_back(element);
  }
  auto* control = Find<Picture>(surface);
  auto* label = dynamic_cast<Label*>(registry_.Find(reading));
  return control ? new SMeterView(clock_, *control, std::move(bar), label) : nullptr;
}

ScopeView* Binder::Scope(const std::string& name) {
  auto* control = Find<CanvasPicture>(name);
  return control ? new ScopeView(clock_, *control) : nullptr;
}

SplitterView* Binder::Splitter(const std::string& name) {
  auto* control = Find<Slider>(name);
  return control ? new SplitterView(clock_, *control) : nullptr;
}

FloatingLabelView* Binder::Floating(const std::string& name, QWidget* anchor) {
  auto* control = Find<FloatingLabel>(name);
  return control && anchor ? new FloatingLabelView(clock_, *control, anchor) : nullptr;
}

EntryView* Binder::Entry(const std::string& name, QWidget* anchor) {
  auto* control = Find<TextBox>(name);
  return control && anchor ? new EntryView(clock_, *control, anchor) : nullptr;
}

namespace {

// The caller shows it; it goes by itself.
QMenu* MakeMenu(const Menu& control, QWidget* window) {
  auto* menu = new QMenu(window);
  menu->setObjectName(QString::fromStdString(control.Name()));
  menu->setFont(skin::WordFont());
  menu->setAttribute(Qt::WA_DeleteOnClose);
  for (int i = 0; i < static_cast<int>(control.Captions().size()); ++i) {
    const QString caption = QString::fromStdString(control.Captions()[static_cast<std::size_t>(i)]);
    if (caption == "-") {
      menu->addSeparator();
      continue;
    }
    QAction* action = menu->addAction(caption);
    action->setEnabled(control.ItemEnabled(i));
    action->setCheckable(control.Ticked(i));
    action->setChecked(control.Ticked(i));
    QObject::connect(action, &QAction::triggered, window, [&control, i] { control.UserChoose(i); });
  }
  return menu;
}

}  // namespace

void Binder::PopupMenu(const std::string& name, QWidget* window, QWidget* button) {
  auto* control = Find<Menu>(name);
  if (!control) return;
  Listening opening = control->OnPopup.Listen([control, window, button] {
    const bool byKeyboard = button && button->hasFocus();
    MakeMenu(*control, window)
        ->popup(byKeyboard ? button->mapToGlobal(QPoint(0, button->height())) : QCursor::pos());
  });
  QObject::connect(window, &QObject::destroyed, [opening]() mutable { opening.reset(); });
}

CardView* Binder::Card(const std::string& frame, const QString& title, CardView::Title shown) {
  Frame* control = frame.empty() ? nullptr : Find<Frame>(frame);
  return new CardView(clock_, control ? *control : StandIn(), title, shown);
}

Frame& Binder::StandIn() {
  const std::string name = "card(" + std::to_string(ownFrames_.size()) + ")";
  Frame& frame = *ownFrames_.emplace_back(std::make_unique<Frame>(ownRegistry_, name));
  // A card without a frame of the panel's is its ground.
  frame.MouseMove = [this](const MouseEvent& at) {
    if (const Control* ground = registry_.Find("frmMain")) ground->MouseMove(at);
  };
  return frame;
}

}  // namespace quorl
