// Band plans between their files and the records.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "memories/BandPlan.h"
#include "platform/Clock.h"
#include "platform/Dialogs.h"
#include "platform/EventQueue.h"
#include "platform/FileWorker.h"
#include "platform/Files.h"
#include "platform/files/PostedFiles.h"
#include "profile/clsINIFile.h"
#include "profile/modIniFiles.h"

namespace quorl {

// "2026-11-23 18:05:09".
std::string StampText(const LocalTime& time);

// A plan's records with their first values: all sub-bands unused, all presets without a frequency, stamped
// `when`. Nothing where the plan is loaded.
void CreateBandPlanRecords(BandPlan& plan, const std::string& when);

// A file of its own for each call: no state, no waiting. Fills the records that CreateBandPlanRecords has
// made; `section` is told after each section that has been read. Missing keys and texts that aren't
// understood leave their fields.
void ReadBandPlan(const clsINIFile& file, BandPlan& plan, const std::function<void()>& section);

// The plan as it stands where it is loaded, else a copy as its file has it; that plan stays unloaded.
BandPlan PlanAsKept(const Files& files, const BandPlan& plan);

// What a plan's records say, key by key.
std::vector<ProfileItem> BandPlanItems(const BandPlan& plan);

// Loads and saves plans beside the sound; the event queue runs meanwhile. Main thread.
class modBandPlan {
 public:
  // All outlives it.
  modBandPlan(Files& files, FileWorker& worker, EventQueue& queue, Dialogs& boxes, const Clock& clock);

  bool BandPlanFileBusy = false;
  bool BandPlanLoading = false;

  void CreateBandPlanRecords(BandPlan& plan);
  // True where the plan is loaded on return; false where another file is being worked on. A file that is
  // missing or holds nothing leaves the first values. An active plan becomes `currentIndex`.
  bool LoadBandPlan(BandPlan& plan, std::int32_t& currentIndex);
  // Writes a plan that has been loaded; the others keep their files to the byte. Returns before the file is
  // written; a failure is told in a box then, and the old file stays. Always true.
  bool SaveBandPlan(const BandPlan& plan);
  bool IsSaving() const { return saving_ > 0; }
  // Waits for the files of all saves so far, and tells what failed.
  void Finish();

 private:
  std::string Content(const std::string& path);
  bool OffersToMend(BandPlan& plan, std::string& content);

  Files& files_;
  FileWorker& worker_;
  EventQueue& queue_;
  Dialogs& boxes_;
  const Clock& clock_;
  FileCalls calls_;
  PostedFiles posted_;
  clsINIFile file_;
  int saving_ = 0;
};

}  // namespace quorl
