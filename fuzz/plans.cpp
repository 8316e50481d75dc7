// Any bytes as a band plan: a load that stays within its records, and a save that reads back the same.
#include <cstddef>
#include <cstdint>
#include <string>

#include "Demand.h"
#include "memories/PlanCheck.h"
#include "memories/PlanFormat.h"
#include "memories/modBandPlan.h"
#include "profile/ProfileText.h"

namespace {

using quorl::fuzz::Demand;

quorl::BandPlan Load(const std::string& content) {
  quorl::BandPlan plan;
  plan.Name = plan.Caption = plan.Description = "fuzz";
  quorl::CreateBandPlanRecords(plan, "");
  quorl::clsINIFile file;
  file.init(content);
  quorl::ReadBandPlan(file, plan, [] {});
  plan.Loaded = true;
  return plan;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string content(reinterpret_cast<const char*>(data), size);
  const quorl::BandPlan plan = Load(content);
  Demand(plan.NumSubBands >= 0 && plan.NumSubBands <= quorl::kSubBandButtons);
  Demand(plan.ActiveSubBand >= 0 && plan.ActiveSubBand < quorl::kSubBandButtons);
  for (const quorl::SubBand& band : plan.SubBands) {
    Demand(band.ActivePreset >= quorl::kNotSet && band.ActivePreset < quorl::kPresetButtons);
    Demand(band.Settings.FreqCurrent <= 214748364);
  }
  Demand(quorl::FormatOf(quorl::MendedFormat(content)).IsSound());
  quorl::CheckPlan(content, [](std::int32_t) { return std::string("AM"); });

  // What a save puts is there afterwards, and putting it again changes nothing.
  quorl::ProfileText text(content);
  const auto items = quorl::BandPlanItems(plan);
  for (const auto& item : items) text.Put(item.Section, item.Key, item.Value);
  quorl::ProfileText again(text.Text());
  for (const auto& item : items) {
    const std::string* value = again.Find(item.Section, item.Key);
    Demand(value != nullptr);
    again.Put(item.Section, item.Key, item.Value);
  }
  Demand(again.Text() == text.Text());
  return 0;
}
