#include "Program.h"

#include <QApplication>
#include <QScreen>
#include <QStandardPaths>
#include <QTimer>
#include <cstdio>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>

#include "FirstRun.h"
#include "LoadReport.h"
#include "TerminationSignals.h"
#include "configuration/ConfigDefaults.h"
#include "core/frmMain.h"
#include "desktop/qt/QtDialogs.h"
#include "desktop/qt/QtEventQueue.h"
#include "desktop/window/Application.h"
#include "desktop/window/DialogWindows.h"
#include "desktop/window/GuideDesk.h"
#include "desktop/window/PanelWindow.h"
#include "desktop/window/Shot.h"
#include "desktop/window/SidePanels.h"
#include "display/scope/ScopeOptions.h"
#include "platform/linux/system/ApplicationFolder.h"
#include "scripting/ScriptDialogs.h"
#include "scripting/ScriptRunner.h"
#include "shared/AudioFile.h"
#include "shared/HostMachine.h"
#include "shared/InstalledData.h"
#include "shared/Version.h"

namespace quorl {

namespace {

void Complain(const std::string& text) {
  std::fprintf(stderr, "quorlsdr: %s\n", text.c_str());
}

class Program {
 public:
  // `asks`: for board and devices, whatever the settings know of them.
  Program(const ProgramOptions& options, WatchedApplication& application, bool asks)
      : options_(options), application_(application), asks_(asks), boxes_(personalBoxes_, std::cout) {
    boxes_.AsksPerson = options.Script.empty();
  }

  // Whether the user has asked for a new start, which asks for board and devices.
  bool StartsAgain() const { return startsAgain_; }

  int Run() {
    std::optional<int> end;
    if (const Failure failure = Begin(end)) {
      Complain(failure->Text);
      return ExitCode::Refused;
    }
    if (end) return *end;
    for (const std::string& notice : machine_->Notices()) Complain(notice);
    if (!frame_->Form_Initialize()) {
      frame_->Form_Unload();  // while the window that it talks to is still there
      return ExitCode::Refused;
    }
    window_->setAttribute(Qt::WA_TransparentForMouseEvents, false);
    if (isNew_ && !frame_->IsOn()) frame_->Controls().Find("optPwr(0)")->UserClick();
    int exitCode = options_.Script.empty() ? WaitForClose() : RunScript(frame_->Controls(), *window_);
    frame_->Form_Unload();
    if (options_.Report) report_.Print(*frame_, *machine_, application_);
    if (file_) {
      if (const Failure failure = file_->File().Close(nullptr)) {
        Complain(failure->Text);
        exitCode = ExitCode::Failed;
      }
    }
    CloseWindow();
    return exitCode;
  }

 private:
  // `end` is set where the program ends with the page that asks for the board.
  Failure Begin(std::optional<int>& end) {
    demo_ = options_.Demo;
    if (Failure failure = MakeMachine()) return failure;
    OpenGuideDesk();
    if (Failure failure = ReadScript()) return failure;
    end = AskFirst();
    if (end) return {};
    if (demo_ && !options_.Demo) {
      if (Failure failure = MakeMachine()) return failure;
    }
    return PutTogether();
  }

  void OpenGuideDesk() {
    Failure missing;  // the guide tells its own
    const std::string data = FindInstalledData(machine_->Storage(), missing);
    guide_ = std::make_unique<GuideDesk>(QString::fromStdString(data + "/guide"));
  }

  Failure MakeMachine() {
    Failure failure;
    HostMachineOptions wanted;
    wanted.Demo = demo_;
    wanted.VirtualTime = options_.VirtualTime;
    wanted.Board.ErrorPpm = options_.BoardErrorPpm;
    wanted.Settings = options_.Settings;
    if (options_.Demo) wanted.Antenna = options_.Antenna;
    machine_.reset();  // it has the lock of its settings
    machine_ = HostMachine::Create(wanted, queue_, boxes_, failure);
    return failure;
  }

  // Its first answers are there for the boxes of the start.
  Failure ReadScript() {
    Failure failure;
    if (options_.Script.empty()) return failure;
    const auto text = machine_->Storage().Read(options_.Script, failure);
    if (text)
      script_ = TakeAnswers(*text, [this](std::string answer) { boxes_.AddAnswer(std::move(answer)); });
    return failure;
  }

  // Where the settings know no board: the page that asks for one. The exit code where the program ends with
  // it.
  std::optional<int> AskFirst() {
    if (!asks_ && (options_.Demo || !options_.Script.empty())) return {};
    FirstRun first(machine_->Parts(), machine_->Settings(), Complain);
    if (!first.IsDue(asks_)) {
      demo_ = demo_ || first.Known() == FirstRun::Next::Demo;
      return {};
    }
    first.Ask([] { QApplication::exit(); });
    personalBoxes_.SetWindow(&first.Window());
    if (!options_.Script.empty()) return RunScript(first.Controls(), first.Window());
    WaitForClose();
    personalBoxes_.SetWindow(nullptr);
    if (!first.Answered()) return ExitCode::Success;
    if (first.Fault()) Complain(first.Fault()->Text);
    demo_ = demo_ || first.Answered() == FirstRun::Next::Demo;
    isNew_ = first.Answered() == FirstRun::Next::NewRadio;
    return {};
  }

  Failure PutTogether() {
    Failure failure, missing;
    const std::string data = FindInstalledData(machine_->Storage(), missing);
    const std::string folder = PrepareApplicationFolder(
        machine_->Storage(), options_.Folder, machine_->Directories().Data, FilledFrom(data), failure);
    if (failure) return missing ? missing : failure;
    if (missing) Complain(missing->Text);  // what was copied before is enough to receive
    log_ = std::make_unique<LogBook>(machine_->Storage(), machine_->Parts().Time, machine_->LogFile());
    if (!options_.Output.empty()) {
      file_ = AudioFile::Create(machine_->Storage(), machine_->Parts().Beside, options_.Output, failure);
    }
    if (failure) return failure;
    const auto defaults = [this](SettingsStore& store) {
      if (demo_) PutDemoDefaults(store);
      if (demo_) machine_->FindLoudspeaker(store);
      PutScopeDefaults(store);
      PutMemoryDefaults(store);
      PutConfigDefaults(store);
    };
    StartOptions start{options_.CommandLine, folder, defaults, SoundFolder(), ProgramVersion()};
    start.OnBoard = [this](std::int32_t model) { machine_->SetModel(model); };
    frame_ = std::make_unique<frmMain>(machine_->Parts(), machine_->Settings(), *log_, std::move(start));
    frame_->OnSplash = [this](bool visible) { ShowSplash(visible); };
    frame_->OnColours = ApplyColours;
    frame_->OnForm = [this] { OpenWindow(); };
    frame_->OnClose = [this] { Close(); };
    frame_->OnGuide = [this] { guide_->Open("index.md"); };
    // A demo for want of a board has neither the ports nor the devices that are asked for.
    frame_->OnFirstStart = [this] {
      startsAgain_ = demo_ && !options_.Demo;
      if (startsAgain_) Close();
      return startsAgain_;
    };
    return {};
  }

  // The user's folder for music, or home where there is none.
  std::string SoundFolder() const {
    const std::string music = QStandardPaths::writableLocation(QStandardPaths::MusicLocation).toStdString();
    const bool exists = machine_->Storage().Kind(music) == FileKind::Directory;
    return exists ? music : QStandardPaths::writableLocation(QStandardPaths::HomeLocation).toStdString();
  }

  void ShowSplash(bool visible) {
    if (!visible) {
      splash_.reset();
      return;
    }
    // The log's controls are there by now: where it is wanted it shows from the first step.
    logWindow_ = std::make_unique<LogWindow>(frame_->Controls(), LogLine());
    dialogs_ = MakeDialogWindows(frame_->Controls(), LogLine());
    logWindow_->PaintNow();
    if (options_.Script.empty()) splash_ = std::make_unique<SplashPanel>(ProgramVersion());
  }

  std::function<void(const std::string&)> LogLine() {
    return [this](const std::string& line) { log_->AddLog(line); };
  }

  void OpenWindow() {
    PanelWindow::Events events;
    events.Log = LogLine();
    events.Closing = [this] {
      Close();
      return true;
    };
    events.Sized = [this](int width, int height) { frame_->NoteWindowSize(width, height); };
    // A script's keys wait for the tuning timer, seen or not.
    if (options_.Script.empty()) events.Seen = [this](bool seen) { frame_->SetSeen(seen); };
    window_ = std::make_unique<PanelWindow>(frame_->Controls(), events);
    ScrollableControls& scrollables = frame_->Scrollables();
    scrollables.GiveFocus = [this](Control& control) { window_->GiveFocus(control.Name()); };
    scrollables.IsShown = [this](const Control& control) { return window_->IsShown(control.Name()); };
    frame_->OnCaption = [this](bool shown) { window_->ShowCaption(shown); };
    personalBoxes_.SetWindow(window_.get());
    RestoreWindowSize();
    window_->setAttribute(Qt::WA_TransparentForMouseEvents);  // until the start is done
    logWindow_->PaintNow();                                   // before the panel covers it
    window_->show();
    frame_->Radio().OnHousekept = [this](double microseconds) {
      report_.NoteHousekeeping(microseconds);
      if (file_) file_->File().Flush();
    };
    frame_->Radio().OnAudio = [this](const std::int16_t* block, std::int32_t attenuation) {
      report_.NoteBlock(frame_->Radio().Rx.Pump.PumpMicroseconds);
      if (file_) file_->Take(block, attenuation);
    };
  }

  void RestoreWindowSize() {
    QSize size(frame_->WindowWidth(), frame_->WindowHeight());
    if (size.isEmpty()) return;
    // The screen may be another one by now. A script's pictures are as large as it wants them.
    if (options_.Script.empty()) size = size.boundedTo(window_->screen()->availableSize());
    window_->resize(size);
  }

  // Windows beside it close with it, and hand the keyboard back to the panel once more.
  void CloseWindow() {
    frame_->Scrollables().GiveFocus = {};
    frame_->Scrollables().IsShown = [](const Control&) { return false; };
    frame_->OnCaption = [](bool) {};
    personalBoxes_.SetWindow(nullptr);
    window_.reset();
  }

  int WaitForClose() {
    QTimer end;
    end.setSingleShot(true);
    QObject::connect(&end, &QTimer::timeout, qApp, [this] { Close(); });
    if (options_.Seconds > 0.0) end.start(static_cast<int>(options_.Seconds * 1000.0));
    if (!closing_) QApplication::exec();
    return ExitCode::Success;
  }

  int RunScript(ControlRegistry& controls, QWidget& window) {
    ScriptHooks hooks;
    hooks.Shot = [&window](const std::string& path, double scale, const std::string& panel) {
      QApplication::processEvents();
      QWidget* shown = panel.empty() ? &window : FindPanel(panel);
      return shown != nullptr && GrabShot(*shown, path, scale);
    };
    if (window_) {
      hooks.Focus = [this](const Control& control) { return window_->FocusByKeyboard(control.Name()); };
      hooks.PressKey = [this](const Key& key, bool down) { window_->PressKey(key, down); };
    }
    hooks.IsClosing = [this] { return closing_; };
    hooks.Answer = [this](std::string answer) { boxes_.AddAnswer(std::move(answer)); };
    QApplication::processEvents();  // the window becomes active before the first gesture, not after it
    ScriptRunner runner(controls, machine_->Parts().Queue, machine_->Parts().Time, hooks, std::cout);
    runner.Verbose = options_.Verbose;
    return runner.Run(script_, options_.Script);
  }

  void Close() {
    closing_ = true;
    QApplication::exit();  // a quit would ask each window first
  }

  const ProgramOptions& options_;
  WatchedApplication& application_;
  const bool asks_;
  QtEventQueue queue_;
  TerminationSignals signals_{queue_, [this] {
                                boxes_.AsksPerson = false;  // nobody is there to answer
                                Close();
                              }};
  QtDialogs personalBoxes_;
  ScriptDialogs boxes_;
  LoadReport report_;
  std::unique_ptr<HostMachine> machine_;
  std::unique_ptr<LogBook> log_;
  std::unique_ptr<AudioFile> file_;
  std::unique_ptr<frmMain> frame_;
  std::unique_ptr<SplashPanel> splash_;
  std::unique_ptr<LogWindow> logWindow_;
  std::unique_ptr<GuideDesk> guide_;
  std::vector<std::unique_ptr<QWidget>> dialogs_;
  std::unique_ptr<PanelWindow> window_;
  std::string script_;
  bool closing_ = false;
  bool demo_ = false;   // asked for, or for want of a board
  bool isNew_ = false;  // its board has just been chosen
  bool startsAgain_ = false;
};

}  // namespace

int RunProgram(const ProgramOptions& options, WatchedApplication& application) {
  for (bool asks = options.FirstStart;; asks = true) {
    Program program(options, application, asks);
    const int code = program.Run();
    if (!program.StartsAgain()) return code;
  }
}

}  // namespace quorl
