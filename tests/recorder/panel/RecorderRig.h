// The recorder's panel with a deck behind it, on a machine of memory; the pump is the test's hand.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/media/SndfileSoundFiles.h"
#include "platform/virtual/VirtualFileWorker.h"
#include "platform/virtual/VirtualFiles.h"
#include "recorder/panel/RecorderPanel.h"
#include "rigs/Hands.h"
#include "rigs/VirtualDesk.h"

namespace quorl::test {

class RecorderRig : public testing::Test, public VirtualDesk, public Hands {
 protected:
  using VirtualDesk::Run;
  static constexpr char kTour[] = "/music/tour.wav";

  RecorderRig() {
    Storage.MakeDirectory("/radio");
    Storage.MakeDirectory("/music");
    Deck.DefaultDirectory = "/music";
    Deck.RecBlockSizeInSamples = 32768;
    Deck.TunedFrequency = [this] { return Tuned; };
    RecorderLinks links;
    links.PressPower = [this](bool on) {
      Presses += on ? "+" : "-";
      Power = on && SoundStarts;
      if (Panel) Panel->ShowState();
    };
    links.IsOn = [this] { return Power; };
    links.Changed = [this] { OnChanged(); };
    links.Media = &Media;
    links.ShowMemories = [this](bool shown) { Memories = shown; };
    Panel.emplace(Context, WavFileMachine{Storage, Worker, Queue, Boxes, Clock}, Deck, links);
    Radio.Initialise();
    Panel->Initialise();
    Run(0.1);
  }

  const ControlRegistry& Registry() override { return Names; }
  bool Shown(int button) { return At(IndexedName("cmdWavCtls", button)).Visible(); }
  // Of the ten buttons, those that look pressed.
  std::string Down() {
    std::string down;
    for (int i = 0; i < WavCtl::Count; ++i) {
      if (Panel->cmdWavCtls(i).Down()) down += std::to_string(i);
    }
    return down;
  }
  void Button(int index) {
    Press("cmdWavCtls", index);
    Run(0.02);
  }
  // The radio runs for so long, where it is on, and the recorder takes or gives.
  void Hear(double seconds) {
    const int blocks = static_cast<int>(seconds * 48000 / SamplesPerEvent + 0.5);
    for (int i = 0; i < blocks; ++i) {
      Block.fill(static_cast<std::int16_t>(i));
      if (Power && Deck.PlayerMode() == PlayerModes::Recording)
        Deck.AddSamples(Block.data(), SamplesPerEvent);
      if (Power && Deck.PlayerMode() == PlayerModes::Playing)
        Deck.GetNextSamples(Block.data(), SamplesPerEvent);
      Deck.NewLogRecord(Tuned);
      if (Power) Panel->Housekeep();
      Run(SamplesPerEvent / 48000.0);
    }
  }
  // A recording of the stations, four seconds each, that has been stopped.
  void Record(std::initializer_list<std::int32_t> stations) {
    Power = true;
    bool begun = false;
    for (const std::int32_t kHz : stations) {
      Tuned = kHz * 10000;
      if (!begun) Button(WavCtl::Record);
      begun = true;
      Hear(4.096);
    }
    Button(WavCtl::Stop);
  }
  void Load(const std::string& path) {
    Boxes.OpenFileAnswers.push_back(path);
    Button(WavCtl::Load);
  }
  // The same, saved and loaded.
  void MakeTour(std::initializer_list<std::int32_t> stations = {7205, 7220, 7290}) {
    Record(stations);
    Boxes.SaveFileAnswers.push_back(kTour);
    Button(WavCtl::Save);
    Load(kTour);
    Presses.clear();
  }
  std::string State() { return Text("lblRecorderState"); }

  VirtualFiles Storage;
  VirtualFileWorker Worker{Queue};
  SndfileSoundFiles Media{Storage};
  ControlRegistry Names;
  ColourSchemes Scheme;
  ScrollableControls Mouse{Scheme};
  PanelColours Colours{Names, Scheme, Mouse};
  NoSoundOutput Output;
  clsWavFile Deck{{Storage, Worker, Queue, Boxes, Clock}, "/radio"};
  Receiver Radio{Clock, Output, Deck, [] {}};
  PanelContext Context{Names, Mouse, Colours, Radio, [this] { Queue.Yield(); }};
  std::array<std::int16_t, SamplesPerEvent> Block{};
  std::int32_t Tuned = 72050000;
  bool Power = false, SoundStarts = true, Memories = true;
  std::string Presses;  // of the power: + On, - Off
  std::function<void()> OnChanged = [] {};
  std::optional<RecorderPanel> Panel;
};

}  // namespace quorl::test
