#include "recorder/panel/TimerPanel.h"

#include <array>
#include <bit>
#include <cstdio>

#include "config/Inks.h"
#include "interaction/PanelColours.h"
#include "interaction/PanelTexts.h"
#include "platform/CalendarDays.h"
#include "support/Product.h"
#include "support/ScopedFlag.h"
#include "support/Text.h"

namespace quorl {
namespace {

constexpr const char* kHeaders = "#  On   Date       Start End   Repeat  Rate  Records";
constexpr const char* kIFText = "IF";
constexpr const char* kDateHint = "The day of the start, such as 2026-11-23";
constexpr const char* kStartHint = "Such as 18:05";
constexpr const char* kEndHint = "Such as 19:30; earlier than the start, it is on the next day";
constexpr std::array<const char*, 3> kRepeats{"Once", "Daily", "Weekly"};
constexpr int kRates = TimerProgramme::kIF + 1;
constexpr std::size_t kDateLength = 10, kTimeAt = 11, kMinutesLength = 5;
constexpr double kDay = 1.0;

std::string RateText(std::int32_t rate) {
  return rate == TimerProgramme::kIF ? kIFText : RecordSampleRateTexts[static_cast<std::size_t>(rate)];
}

// "18:05", with its seconds where there are any.
std::string TimeText(double when) {
  const std::string time = DateText(when).substr(kTimeAt);
  return time.ends_with(":00") ? time.substr(0, kMinutesLength) : time;
}

// "18:05", "6:05", "1805" or "18:05:30" as "18:05:00" and so on; anything else as it is.
std::string FullTime(std::string_view typed) {
  std::string time(Trim(typed));
  if (time.find(':') == std::string::npos && time.size() == 4) time.insert(2, ":");
  if (time.find(':') == 1) time.insert(0, "0");
  return time.size() == kMinutesLength ? time + ":00" : time;
}

std::string Column(std::string text, std::size_t width) {
  text.resize(std::max(text.size(), width), ' ');
  return text + " ";
}

bool IsFree(const TimerProgramme& programme) {
  return programme == TimerProgramme{};
}

bool IsDue(const TimerProgramme& programme, double now) {
  return programme.Active && programme.Start <= now && programme.End > now;
}

}  // namespace

TimerPanel::TimerPanel(ControlRegistry& registry, RecordingTimer& timer, const clsWavFile& deck,
                       const Clock& clock, TimerPanelLinks links)
    : cmdTimer(registry, "cmdTimer"),
      frmTimer(registry, "frmTimer"),
      lblTimerHeaders(registry, "lblTimerHeaders"),
      lstTimer(registry, "lstTimer"),
      chkTimerOn(registry, "chkTimerOn"),
      txtTimerDate(registry, "txtTimerDate"),
      txtTimerStart(registry, "txtTimerStart"),
      txtTimerEnd(registry, "txtTimerEnd"),
      optTimerRepeat(registry, "optTimerRepeat", static_cast<int>(kRepeats.size())),
      Target(registry, links_),
      optTimerRate(registry, "optTimerRate", kRates),
      lblTimerMessage(registry, "lblTimerMessage"),
      cmdTimerSave(registry, "cmdTimerSave"),
      cmdTimerClear(registry, "cmdTimerClear"),
      cmdTimerClose(registry, "cmdTimerClose"),
      timer_(timer),
      deck_(deck),
      clock_(clock),
      links_(std::move(links)) {
  frmTimer.Visible = false;
  NameControls();
  ConnectControls();
}

void TimerPanel::NameControls() {
  cmdTimer.Caption = std::string("Timer");
  cmdTimer.ToolTip = std::string("Records at its hour: programmes, once or again and again");
  frmTimer.Caption = std::string("Timer - ") + kProductName;
  lblTimerHeaders.Caption = std::string(kHeaders);
  lstTimer.AccessibleName = std::string("Programmes");
  chkTimerOn.Caption = std::string("On");
  chkTimerOn.AccessibleName = std::string("Programme on");
  txtTimerDate.AccessibleName = std::string("Date");
  txtTimerStart.AccessibleName = std::string("Start");
  txtTimerEnd.AccessibleName = std::string("End");
  ClearFaults();
  for (int i = 0; i < optTimerRepeat.Count(); ++i)
    optTimerRepeat(i).Caption = std::string(kRepeats[static_cast<std::size_t>(i)]);
  for (int i = 0; i < optTimerRate.Count(); ++i) {
    optTimerRate(i).Caption = RateText(i);
    optTimerRate(i).AccessibleName = "Rate " + RateText(i);
  }
  lblTimerMessage.AccessibleName = std::string("Timer");
  cmdTimerSave.Caption = std::string("&Save");
  cmdTimerClear.Caption = std::string("C&lear");
  cmdTimerClear.ToolTip = std::string("Frees the chosen line");
  cmdTimerClose.Caption = std::string("&Close");
}

void TimerPanel::ConnectControls() {
  cmdTimer.Click = [this] { Open(); };
  lstTimer.Click = [this] {
    if (showing_ || lstTimer.ListIndex() < 0) return;
    chosen_ = static_cast<std::size_t>(lstTimer.ListIndex());
    ShowProgramme();
  };
  BindToggle(chkTimerOn, [] {});
  for (const Field& field :
       {Field{txtTimerDate, kDateHint}, Field{txtTimerStart, kStartHint}, Field{txtTimerEnd, kEndHint}})
    field.Box.Change = [field] { ClearFault(field.Box, field.Hint); };
  for (OptionGroup* group : {&optTimerRepeat, &optTimerRate})
    group->Click = [group](int index) { PaintButtons(*group, index); };
  cmdTimerSave.Click = [this] { cmdTimerSave_Click(); };
  cmdTimerClear.Click = [this] { cmdTimerClear_Click(); };
  cmdTimerClose.Click = [this] { cmdTimerClose_Click(); };
  frmTimer.KeyDown = [this](const Key& key) {
    if (key.Code == Key::Escape) cmdTimerClose_Click();
    if (key.Code == Key::Enter) cmdTimerSave_Click();
  };
}

double TimerPanel::Now() const {
  return DaysOf(clock_.Now());
}

void TimerPanel::Open() {
  if (!frmTimer.Visible()) {
    ShowList();
    ShowProgramme();
  }
  frmTimer.Visible = true;
}

std::string TimerPanel::Line(std::size_t which) const {
  const TimerProgramme& programme = timer_.Programmes[which];
  const std::string number = Column(std::to_string(which + 1), 2);
  if (IsFree(programme)) return number + "free";
  const bool runs = timer_.Running() == which;
  return number +
         Column(runs               ? "now"
                : programme.Active ? "on"
                                   : "off",
                4) +
         Column(DateText(programme.Start).substr(0, kDateLength), kDateLength) +
         Column(DateText(programme.Start).substr(kTimeAt, kMinutesLength), kMinutesLength) +
         Column(DateText(programme.End).substr(kTimeAt, kMinutesLength), kMinutesLength) +
         Column(kRepeats[static_cast<std::size_t>(programme.Repeat)], 7) +
         Column(RateText(programme.Rate), 5) + Target.Text(programme.Target);
}

void TimerPanel::ShowList() {
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < RecordingTimer::kProgrammes; ++i) lines.push_back(Line(i));
  const ScopedFlag showing(showing_);
  lstTimer.SetItems(std::move(lines));
  lstTimer.SetListIndex(static_cast<int>(chosen_));
  Tell({});
}

// What somebody who opens a free line most likely wants: what is heard, today, at the rate that is in use.
TimerProgramme TimerPanel::Suggestion() const {
  TimerProgramme programme;
  programme.Active = true;
  programme.Start = Now();
  programme.Target = links_.Tuned();
  programme.Rate =
      deck_.RecordIF ? TimerProgramme::kIF : std::countr_zero(static_cast<std::uint32_t>(deck_.Decimator()));
  return programme;
}

void TimerPanel::ShowProgramme() {
  const TimerProgramme& stored = timer_.Programmes[chosen_];
  const TimerProgramme programme = IsFree(stored) ? Suggestion() : stored;
  chkTimerOn.SetValue(programme.Active);
  PaintToggle(chkTimerOn, programme.Active);
  ShowWhen(programme);
  optTimerRepeat.Press(static_cast<int>(programme.Repeat));
  PaintButtons(optTimerRepeat, optTimerRepeat.Pressed());
  Target.Show(programme.Target);
  optTimerRate.Press(programme.Rate);
  PaintButtons(optTimerRate, optTimerRate.Pressed());
  ClearFaults();
  Tell({});
}

void TimerPanel::ShowWhen(const TimerProgramme& programme) {
  const bool timed = programme.End > programme.Start;
  txtTimerDate.SetValue(DateText(programme.Start).substr(0, kDateLength));
  txtTimerStart.SetValue(timed ? TimeText(programme.Start) : "");
  txtTimerEnd.SetValue(timed ? TimeText(programme.End) : "");
}

void TimerPanel::ClearFaults() {
  ClearFault(txtTimerDate, kDateHint);
  ClearFault(txtTimerStart, kStartHint);
  ClearFault(txtTimerEnd, kEndHint);
}

void TimerPanel::Tell(const std::string& fault) {
  lblTimerMessage.Caption = fault.empty() ? timer_.State() : fault;
  lblTimerMessage.ForeColour = fault.empty() ? kNoColour : kCautionInk;
}

std::string TimerPanel::Refuse(Control& field, const std::string& fault) {
  TellFault(field, fault);
  return fault;
}

std::string TimerPanel::TakeWhen(TimerProgramme& programme) {
  const std::string date(Trim(txtTimerDate.Value()));
  const auto at = [&date](const TextBox& box) { return ParseDate(date + " " + FullTime(box.Value())); };
  if (!ParseDate(date + " 00:00:00")) return Refuse(txtTimerDate, "Give a date such as 2026-11-23.");
  const std::optional<double> start = at(txtTimerStart), end = at(txtTimerEnd);
  if (!start) return Refuse(txtTimerStart, "Give a start such as 18:05.");
  if (!end) return Refuse(txtTimerEnd, "Give an end such as 19:30.");
  programme.Start = *start;
  programme.End = *end < *start ? *end + kDay : *end;
  return {};
}

// One that is off may lie in the past.
std::string TimerPanel::Take(TimerProgramme& programme) {
  programme.Active = chkTimerOn.Value();
  programme.Repeat = static_cast<TimerRepeat>(std::max(optTimerRepeat.Pressed(), 0));
  programme.Rate = std::max(optTimerRate.Pressed(), 0);
  std::string fault = TakeWhen(programme);
  if (fault.empty()) fault = Target.Take(programme.Target);
  if (!fault.empty()) return fault;
  fault = ProgrammeFault(programme, programme.Active ? Now() : programme.Start);
  return fault.empty() ? fault : Refuse(txtTimerEnd, fault);
}

void TimerPanel::cmdTimerSave_Click() {
  TimerProgramme programme;
  ClearFaults();
  if (const std::string fault = Take(programme); !fault.empty()) return Tell(fault);
  TurnProgramme(programme, Now());
  Replace(programme);
}

void TimerPanel::cmdTimerClear_Click() {
  Replace({});
}

// A recording that goes on under way keeps what it began with; only its end is the new one.
void TimerPanel::Replace(const TimerProgramme& programme) {
  if (timer_.Running() == chosen_ && !IsDue(programme, Now())) timer_.Cancel();
  timer_.Programmes[chosen_] = programme;
  links_.Changed();
  ShowList();
  ShowProgramme();
}

void TimerPanel::cmdTimerClose_Click() {
  frmTimer.Visible = false;
}

}  // namespace quorl
