#include "memories/modBandPlan.h"

#include <algorithm>
#include <cstdio>
#include <optional>

#include "memories/PlanFormat.h"
#include "memories/TuningBlock.h"
#include "support/Product.h"
#include "support/ScopedFlag.h"
#include "support/Text.h"
#include "support/TextEncoding.h"

namespace quorl {
namespace {

constexpr std::chrono::milliseconds kWait{5};
constexpr std::size_t kSubBandCaption = 6, kPresetCaption = 7;  // characters
constexpr char kMainSection[] = "MainBand";

std::string SubBandSection(std::int32_t n) {
  return "SubBand." + NumberText(n);
}

std::string PresetSection(std::int32_t n, std::int32_t p) {
  return "Preset." + NumberText(n) + "." + NumberText(p);
}

// Items of one section. What isn't understood leaves the value.
class SectionReader {
 public:
  SectionReader(const clsINIFile& file, std::string section) : file_(file), section_(std::move(section)) {}

  void Read(const char* key, std::string& value, std::size_t most = std::string::npos) const {
    value = FirstCharacters(file_.LoadItem(section_, key, value), most);
  }
  void Read(const char* key, bool& value) const {
    value = ParseFlag(file_.LoadItem(section_, key, "")).value_or(value);
  }
  void Read(const char* key, std::int32_t& value, std::int32_t least, std::int32_t most) const {
    if (const auto number = ParseInt32(file_.LoadItem(section_, key, "")))
      value = std::clamp(*number, least, most);
  }
  void ReadHertz(const char* key, std::int32_t& value) const {
    value = ParseHertz(file_.LoadItem(section_, key, "")).value_or(value);
  }
  void ReadBlock(TuningSettings& block) const { LoadTuningSettings(file_, section_, block); }

 private:
  const clsINIFile& file_;
  std::string section_;
};

void MakePreset(Preset& preset, const std::string& plan, std::int32_t n, std::int32_t p,
                const std::string& when) {
  preset.Name = plan + ".SubBand(" + NumberText(n) + ").Preset(" + NumberText(preset.Index) + ")";
  preset.Caption = "P" + NumberText(p + 1);
  preset.Description = "Preset" + NumberText(p + 1);
  preset.Index = p;
  preset.When = when;
  preset.Active = false;
  preset.Settings.DemodMode = preset.Settings.FilterMode = 0;
  preset.Settings.FreqCurrent = kNotSet;
  preset.Settings.HiSideLO = false;
}

void MakeSubBand(SubBand& band, const BandPlan& plan, std::int32_t n, const std::string& when) {
  band.Name = plan.Name + ".SubBand(" + NumberText(n) + ")";
  band.Index = n;
  band.NumPresets = band.PresetsBound = plan.MaxPresets;
  band.Caption = "S" + NumberText(n + 1);
  band.Description = "SubBand #" + NumberText(n + 1);
  band.ActivePreset = band.Settings.FreqCurrent = band.FreqMin = band.FreqMax = kNotSet;
  band.Used = band.Visited = false;
  band.Presets.resize(static_cast<std::size_t>(band.PresetsBound) + 1);
  for (std::int32_t p = 0; p <= band.PresetsBound; ++p)
    MakePreset(band.Presets[static_cast<std::size_t>(p)], plan.Name, n, p, when);
}

void ReadPreset(const SectionReader& section, Preset& preset) {
  section.Read("Caption", preset.Caption, kPresetCaption);
  section.Read("Description", preset.Description);
  section.Read("Active", preset.Active);
  section.Read("When", preset.When);
  section.ReadBlock(preset.Settings);
}

void ReadSubBand(const SectionReader& section, SubBand& band) {
  section.Read("Caption", band.Caption, kSubBandCaption);
  section.Read("Description", band.Description);
  section.Read("ActivePreset", band.ActivePreset, kNotSet, kPresetButtons - 1);
  section.ReadHertz("FreqMin", band.FreqMin);
  section.ReadHertz("FreqMax", band.FreqMax);
  section.ReadHertz("FreqCurrent", band.Settings.FreqCurrent);
  band.Used = band.FreqMax >= 0 || band.FreqMin >= 0 || band.Settings.FreqCurrent >= 0;
  section.ReadBlock(band.Settings);
}

// Adds the keys of one section to a list.
class SectionWriter {
 public:
  SectionWriter(std::vector<ProfileItem>& items, std::string section)
      : items_(items), section_(std::move(section)) {}

  void Put(std::string_view key, const std::string& value) {
    items_.push_back({section_, std::string(key), value});
  }
  void Put(std::string_view key, std::int32_t value) { Put(key, NumberText(value)); }
  // What a plan, a sub-band and a preset begin with.
  template <class Record>
  void PutNames(const Record& record) {
    Put("Index", record.Index);
    Put("Name", record.Name);
    Put("Caption", record.Caption);
    Put("Description", record.Description);
  }
  void PutBlock(const TuningSettings& block) {
    SaveTuningSettings(block, [this](std::string_view key, const std::string& value) { Put(key, value); });
  }

 private:
  std::vector<ProfileItem>& items_;
  std::string section_;
};

void WritePreset(SectionWriter section, const Preset& preset) {
  section.PutNames(preset);
  section.Put("Active", FlagText(preset.Active));
  section.Put("When", preset.When);
  section.PutBlock(preset.Settings);
}

void WriteSubBand(SectionWriter section, const SubBand& band) {
  section.PutNames(band);
  section.Put("NumPresets", band.NumPresets);
  section.Put("ActivePreset", band.ActivePreset);
  section.Put("FreqMin", band.FreqMin);
  section.Put("FreqMax", band.FreqMax);
  section.PutBlock(band.Settings);
}

void WriteMain(SectionWriter section, const BandPlan& plan) {
  section.PutNames(plan);
  section.Put("Active", FlagText(plan.Active));
  section.Put("ActiveSubBand", plan.ActiveSubBand);
  section.Put("NumSubBands", plan.NumSubBands);
}

}  // namespace

std::string StampText(const LocalTime& time) {
  char text[80];
  std::snprintf(text, sizeof text, "%d-%02d-%02d %02d:%02d:%02d", time.Year, time.Month, time.Day, time.Hour,
                time.Minute, time.Second);
  return text;
}

void CreateBandPlanRecords(BandPlan& plan, const std::string& when) {
  if (plan.Loaded) return;
  plan.NumSubBands = plan.MaxSubBands - 1;
  plan.SubBands.resize(static_cast<std::size_t>(plan.MaxSubBands) + 1);
  for (std::int32_t n = 0; n <= plan.MaxSubBands; ++n)
    MakeSubBand(plan.SubBands[static_cast<std::size_t>(n)], plan, n, when);
}

void ReadBandPlan(const clsINIFile& file, BandPlan& plan, const std::function<void()>& section) {
  const SectionReader main(file, kMainSection);
  main.Read("Caption", plan.Caption);
  main.Read("Description", plan.Description);
  main.Read("Active", plan.Active);
  main.Read("ActiveSubBand", plan.ActiveSubBand, 0, plan.MaxSubBands - 1);
  main.Read("NumSubBands", plan.NumSubBands, 0, plan.MaxSubBands);
  for (std::int32_t n = 0; n <= plan.NumSubBands; ++n) {
    SubBand& band = plan.SubBands[static_cast<std::size_t>(n)];
    ReadSubBand({file, SubBandSection(n)}, band);
    section();
    for (std::int32_t p = 0; band.Used && p <= band.NumPresets; ++p) {
      ReadPreset({file, PresetSection(n, p)}, band.Presets[static_cast<std::size_t>(p)]);
      section();
    }
  }
}

BandPlan PlanAsKept(const Files& files, const BandPlan& plan) {
  BandPlan kept = plan;
  if (plan.Loaded) return kept;
  CreateBandPlanRecords(kept, "");
  Failure failure;
  clsINIFile file;
  file.init(files.Read(plan.FileName, failure).value_or(""));
  ReadBandPlan(file, kept, [] {});
  return kept;
}

std::vector<ProfileItem> BandPlanItems(const BandPlan& plan) {
  std::vector<ProfileItem> items;
  WriteMain({items, kMainSection}, plan);
  for (std::int32_t n = 0; n <= plan.NumSubBands; ++n) {
    const SubBand& band = plan.SubBands[static_cast<std::size_t>(n)];
    WriteSubBand({items, SubBandSection(n)}, band);
    for (std::int32_t p = 0; p < band.PresetsBound; ++p) {
      const Preset& preset = band.Presets[static_cast<std::size_t>(p)];
      if (preset.Settings.FreqCurrent > 0) WritePreset({items, PresetSection(n, p)}, preset);
    }
  }
  return items;
}

modBandPlan::modBandPlan(Files& files, FileWorker& worker, EventQueue& queue, Dialogs& boxes,
                         const Clock& clock)
    : files_(files),
      worker_(worker),
      queue_(queue),
      boxes_(boxes),
      clock_(clock),
      calls_(worker),
      posted_(files, worker) {}

void modBandPlan::CreateBandPlanRecords(BandPlan& plan) {
  quorl::CreateBandPlanRecords(plan, StampText(clock_.Now()));
}

// The content, or nothing where it can't be read.
std::string modBandPlan::Content(const std::string& path) {
  std::optional<FileContent> content;
  posted_.Read(path, [&content](FileContent read) { content = std::move(read); });
  while (!content) queue_.Wait(kWait);
  return content->Fault ? std::string() : std::move(content->Bytes);
}

// False where the user wants the file to stay as it is.
bool modBandPlan::OffersToMend(BandPlan& plan, std::string& content) {
  const PlanFormat format = FormatOf(content);
  if (!format.HidesSomething()) return true;
  const std::string why = format.ByteOrderMark
                              ? "begins with a byte order mark, which hides its first section"
                              : "has lines that end in a line feed alone and can't be told apart";
  const MessageAnswer answer =
      boxes_.ShowMessage({.Text = plan.FileName + " " + why +
                                  ". Convert it? The file as it is now is kept as " + plan.Name + ".bpl.bak.",
                          .Title = kProductName,
                          .Icon = MessageIcon::Question,
                          .Buttons = MessageButtons::YesNo});
  if (answer != MessageAnswer::Yes) return false;
  const std::string mended = MendedFormat(content);
  std::optional<Failure> result;
  calls_.Make<Failure>(
      [&files = files_, path = plan.FileName, mended] {
        const Failure failure = files.Copy(path, path + ".bak");
        return failure ? failure : files.Replace(path, mended);
      },
      [&result](Failure failure) { result = std::move(failure); });
  while (!result) queue_.Wait(kWait);
  if (*result) {
    TellProfileFault(boxes_, "ProfileSaveItem: ", **result);
    return false;
  }
  content = mended;
  return true;
}

bool modBandPlan::LoadBandPlan(BandPlan& plan, std::int32_t& currentIndex) {
  if (plan.Loaded) return true;
  if (BandPlanFileBusy) return false;
  const ScopedFlag busy(BandPlanFileBusy), loading(BandPlanLoading);
  std::string content = Content(plan.FileName);
  plan.ReadOnly = !OffersToMend(plan, content);
  file_.init(std::move(content));
  ReadBandPlan(file_, plan, [this] { queue_.Yield(); });
  if (plan.Active) currentIndex = plan.Index;
  plan.Loaded = true;
  return true;
}

bool modBandPlan::SaveBandPlan(const BandPlan& plan) {
  if (!plan.Loaded || plan.ReadOnly) return true;
  while (BandPlanFileBusy) queue_.Wait(kWait);
  ++saving_;
  calls_.Make<Failure>([&files = files_, path = plan.FileName,
                        items = BandPlanItems(plan)] { return SaveProfileItems(files, path, items); },
                       [this](const Failure& failure) {
                         --saving_;
                         if (failure) TellProfileFault(boxes_, "ProfileSaveItem: ", *failure);
                       });
  return true;
}

void modBandPlan::Finish() {
  worker_.Finish();
  while (saving_ > 0) queue_.Wait(kWait);
}

}  // namespace quorl
