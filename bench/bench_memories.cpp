// A band plan with every sub-band and preset in use, from its text and back into it.
#include <benchmark/benchmark.h>

#include <vector>

#include "Rows.h"
#include "memories/modBandPlan.h"
#include "profile/ProfileText.h"

namespace quorl {
namespace {

BandPlan Fresh() {
  BandPlan plan;
  plan.Name = plan.Caption = plan.Description = "Full";
  CreateBandPlanRecords(plan, "2026-11-23 12:00:00");
  return plan;
}

std::string Changed(const std::string& content, const BandPlan& plan) {
  ProfileText text(content);
  for (const ProfileItem& item : BandPlanItems(plan)) text.Put(item.Section, item.Key, item.Value);
  return text.Text();
}

struct FullPlan {
  FullPlan() : Plan(Fresh()) {
    for (SubBand& band : Plan.SubBands) {
      band.FreqMin = 7000000;
      band.FreqMax = 7200000;
      band.Settings.Changed = true;
      for (Preset& preset : band.Presets) {
        preset.Settings.FreqCurrent = 7100000;
        preset.Settings.Changed = true;
      }
    }
    Text = Changed("", Plan);
  }
  void Load() const {
    BandPlan plan = Fresh();
    clsINIFile file;
    file.init(Text);
    ReadBandPlan(file, plan, [] {});
    benchmark::DoNotOptimize(plan);
  }
  void Save() {
    Plan.SubBands[3].Presets[5].Settings.FreqCurrent ^= 1;
    benchmark::DoNotOptimize(Changed(Text, Plan));
  }
  BandPlan Plan;
  std::string Text;
};

void Load(benchmark::State& state) {
  const FullPlan full;
  for (auto _ : state) full.Load();
}
void Save(benchmark::State& state) {
  FullPlan full;
  for (auto _ : state) full.Save();
}
BENCHMARK(Load)->Name("band plan loaded")->Unit(benchmark::kMillisecond);
BENCHMARK(Save)->Name("band plan put into its text")->Unit(benchmark::kMillisecond);

}  // namespace

std::vector<Row> MeasureMemories() {
  FullPlan full;
  const auto load = [&full] { full.Load(); };
  const auto save = [&full] { full.Save(); };
  return {{"Files", "band plan of 18 x 12 presets, loaded", MillisecondsOf(load, 4), "ms", 50.0},
          {"Files", "the same, put into its text", MillisecondsOf(save, 4), "ms", 100.0}};
}

}  // namespace quorl
