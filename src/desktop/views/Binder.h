// Binds controls to views by name: one line a control.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "controls/ControlRegistry.h"
#include "desktop/views/AdviceView.h"
#include "desktop/views/CardView.h"
#include "desktop/views/ChoiceView.h"
#include "desktop/views/EntryView.h"
#include "desktop/views/FaceView.h"
#include "desktop/views/FieldViews.h"
#include "desktop/views/FloatingLabelView.h"
#include "desktop/views/FocusRestView.h"
#include "desktop/views/FrequencyView.h"
#include "desktop/views/KnobView.h"
#include "desktop/views/LabelView.h"
#include "desktop/views/LampView.h"
#include "desktop/views/LevelBarView.h"
#include "desktop/views/LoudspeakerView.h"
#include "desktop/views/MessageView.h"
#include "desktop/views/NoteView.h"
#include "desktop/views/RefreshClock.h"
#include "desktop/views/SMeterView.h"
#include "desktop/views/ScopeView.h"
#include "desktop/views/SeekView.h"
#include "desktop/views/SliderView.h"
#include "desktop/views/SplitView.h"
#include "desktop/views/SwatchView.h"
#include "desktop/views/TickView.h"
#include "desktop/views/TransportView.h"

namespace quorl {

// A control that isn't there, or is of another kind, gives one line to the log, and a null view: the window
// goes on without it. Views belong to the Qt parent that they are put into.
class Binder {
 public:
  using Logger = std::function<void(const std::string&)>;

  Binder(const ControlRegistry& registry, RefreshClock& clock, Logger log);

  FaceView* Button(const std::string& name);
  FaceView* Toggle(const std::string& name);
  // The same as a box with its words.
  TickView* Tick(const std::string& name);
  FaceView* Loudspeaker(const std::string& name);
  // name(0) .. name(count-1), of which some may be missing; arrow keys go from one to the next.
  std::vector<FaceView*> Options(const std::string& name, int count);
  // One that no arrow key comes to, as it does something of its own.
  FaceView* Option(const std::string& name);
  LabelView* Word(const std::string& name, const QString& widest = {}, int pixels = 0);
  LabelView* Value(const std::string& name, const QString& widest, int pixels = 0);
  LabelView* Reading(const std::string& name, const QString& widest, int pixels = 0);
  // Of several lines, which break at that width.
  MessageView* Message(const std::string& name, int width);
  // Quiet words under something, over that many lines.
  AdviceView* Advice(const std::string& name, int lines);
  LevelBarView* Level(const std::string& name);
  KnobView* Knob(const std::string& name, int diameter);
  SliderView* Slide(const std::string& name, int width);
  SeekView* Seek(const std::string& name, int width);
  TransportView* Transport(const std::string& name, TransportSign sign);
  LampView* Lamp(const std::string& name);
  FocusRestView* FocusRest(const std::string& name);
  ChoiceView* Choice(const std::string& name, int width);
  PopupListView* PopupList(const std::string& name, QWidget* anchor);
  ListView* List(const std::string& name);
  TextView* Text(const std::string& name, int width);
  SwatchView* Swatch(const std::string& name);
  SymbolView* Sign(const std::string& name, Symbol symbol);
  // `surface` takes the keys; the digits are the labels `digits`(0) .. (8).
  FrequencyView* Frequency(const std::string& surface, const std::string& digits);
  SMeterView* SMeter(const std::string& surface, const std::string& elements, int count,
                     const std::string& reading);
  // A few words that come up under `anchor` for a while.
  NoteView* Note(const std::string& name, QWidget* anchor);
  ScopeView* Scope(const std::string& name);
  SplitterView* Splitter(const std::string& name);
  // Stands over the picture that it names, in the window of `anchor`.
  FloatingLabelView* Floating(const std::string& name, QWidget* anchor);
  // A line to type into, over `anchor`.
  EntryView* Entry(const std::string& name, QWidget* anchor);
  // Pops up when the control asks for it: at the pointer, or under `button` where that has the keyboard.
  void PopupMenu(const std::string& name, QWidget* window, QWidget* button = nullptr);
  // A card always comes: without a frame of that name it has one of its own.
  CardView* Card(const std::string& frame, const QString& title,
                 CardView::Title shown = CardView::Title::Shown);

  template <class C>
  C* Find(const std::string& name);

 private:
  Frame& StandIn();

  const ControlRegistry& registry_;
  RefreshClock& clock_;
  Logger log_;
  ControlRegistry ownRegistry_;
  std::vector<std::unique_ptr<Frame>> ownFrames_;
};

template <class C>
C* Binder::Find(const std::string& name) {
  Control* control = registry_.Find(name);
  C* wanted = dynamic_cast<C*>(control);
  if (!wanted) log_("Window: " + name + (control ? " is of another kind" : " is not on the panel"));
  return wanted;
}

}  // namespace quorl
