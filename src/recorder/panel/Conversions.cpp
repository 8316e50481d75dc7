#include "recorder/panel/Conversions.h"

#include <utility>

#include "recorder/files/SoundImport.h"
#include "support/NumberPicture.h"
#include "support/Text.h"

namespace quorl {
namespace {}  // namespace

std::string TrackFolder(const std::string& recording) {
  const std::size_t name = recording.rfind('/') + 1, ending = recording.rfind('.');
  const bool ends = ending != std::string::npos && ending > name;
  return (ends ? recording.substr(0, ending) : recording) + " tracks";
}

Conversions::Conversions(const WavFileMachine& machine, const SoundFiles* media, std::string folder)
    : machine_(machine),
      media_(media),
      imported_(std::move(folder) + "/~QUORLSND.TMP"),
      job_(machine.Worker) {}

Conversions::~Conversions() {
  job_.Stop();
  machine_.Worker.Finish();
  if (machine_.Storage.Exists(imported_)) machine_.Storage.Remove(imported_);
}

void Conversions::Start(std::shared_ptr<FileJob> job, const std::string& what, std::function<void()> done) {
  what_ = what;
  progress_ = 0.0;
  job_.OnProgress = [this](double share) {
    progress_ = share;
    Changed();
  };
  job_.OnEnd = [this, done = std::move(done)](const Failure& failure) {
    failure ? Failed(*failure) : done();
    Changed();
  };
  job_.Start(std::move(job));
  Changed();
}

void Conversions::Import(const std::string& path, std::function<void(const std::string&)> done) {
  if (!CanConvert()) return;
  Start(std::make_shared<SoundImport>(machine_.Storage, *media_, path, imported_),
        "Reading " + FileNameOf(path), [this, done = std::move(done)] { done(imported_); });
}

void Conversions::Export(TrackExportOrder order) {
  if (!CanConvert()) return;
  const std::string folder = order.Folder;
  const auto job = std::make_shared<TrackExport>(machine_.Storage, *media_, std::move(order));
  Start(job, "Writing tracks", [this, job, folder] {
    const std::size_t files = job->Written().size();
    Exported(files == 1 ? "Written " + job->Written().front()
                        : FormatPicture(static_cast<double>(files), "#,##0") + " tracks in " + folder);
  });
}

void Conversions::Stop() {
  if (!IsRunning()) return;
  job_.Stop();
  Changed();
}

std::string Conversions::State() const {
  return IsRunning() ? what_ + " " + FormatPicture(progress_, "0%") + ", Stop ends it" : "";
}

}  // namespace quorl
