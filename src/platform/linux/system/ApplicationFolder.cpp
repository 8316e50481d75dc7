#include "platform/linux/system/ApplicationFolder.h"

#include <filesystem>

namespace quorl {
namespace {

namespace fs = std::filesystem;

// Written last: a fill that was cut off goes on at the next start.
constexpr const char* kFilledMark = "/.filled";

Failure CopyMissing(Files& files, const fs::path& source, const std::string& target) {
  if (files.Exists(target)) return {};
  return files.Copy(source.string(), target);
}

Failure Fill(Files& files, const std::string& installed, const std::string& folder) {
  std::error_code error;
  for (fs::recursive_directory_iterator entry(installed, error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code ignored;
    const std::string target = folder + "/" + entry->path().lexically_relative(installed).string();
    const Failure failure = entry->is_directory(ignored) ? files.MakeDirectory(target)
                                                         : CopyMissing(files, entry->path(), target);
    if (failure) return failure;
  }
  if (!error) return files.Replace(folder + kFilledMark, "");
  return Error{error.value(), "Can't read the installed data in " + installed + ": " + error.message() +
                                  ". Install the program again, or name a folder of your own."};
}

}  // namespace

std::string PrepareApplicationFolder(Files& files, const std::string& named, const std::string& usual,
                                     const std::string& installed, Failure& failure) {
  failure.reset();
  const std::string folder = named.empty() ? usual : named;
  const bool own = !named.empty() && files.Exists(named) && !files.Exists(named + kFilledMark);
  failure = files.MakeDirectory(folder);
  if (!failure && !own && !installed.empty() && !files.Exists(folder + kFilledMark)) {
    failure = Fill(files, installed, folder);
  }
  return failure ? std::string() : folder;
}

}  // namespace quorl
