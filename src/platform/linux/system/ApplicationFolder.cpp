#include "platform/linux/system/ApplicationFolder.h"

#include <filesystem>
#include <set>
#include <sstream>

namespace quorl {
namespace {

namespace fs = std::filesystem;

// Lists what has been copied, a name a line. Written last: a fill that was cut off goes on at the next start.
constexpr const char* kFilledMark = "/.filled";
constexpr const char* kReadMe = "README.md";  // of the source tree
// The first versions copied these, and wrote an empty list.
const std::set<std::string> kFirstCopied = {"Amateur.bpl", "Broadcast.bpl", "Utility.bpl"};

std::set<std::string> Copied(const Files& files, const std::string& folder) {
  std::set<std::string> names;
  Failure failure;
  if (!files.Exists(folder + kFilledMark)) return names;
  std::istringstream lines(files.Read(folder + kFilledMark, failure).value_or(""));
  for (std::string name; std::getline(lines, name);) names.insert(name);
  return names.empty() ? kFirstCopied : names;
}

Failure CopyMissing(Files& files, const fs::path& source, const std::string& target) {
  if (files.Exists(target)) return {};
  return files.Copy(source.string(), target);
}

// What is new there since the last time.
Failure FillFrom(Files& files, const InstalledFolder& installed, const std::string& folder,
                 std::set<std::string>& copied, std::error_code& error) {
  const std::string to = installed.To.empty() ? std::string() : installed.To + "/";
  if (!to.empty() && files.Exists(installed.From)) {
    if (Failure failure = files.MakeDirectory(folder + "/" + installed.To)) return failure;
  }
  for (fs::recursive_directory_iterator entry(installed.From, error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code ignored;
    const std::string name = to + entry->path().lexically_relative(installed.From).string();
    const bool isFolder = entry->is_directory(ignored);
    if (entry->path().filename() == kReadMe || (!isFolder && !copied.insert(name).second)) continue;
    const std::string target = folder + "/" + name;
    Failure failure = isFolder ? files.MakeDirectory(target) : CopyMissing(files, entry->path(), target);
    if (failure) return failure;
  }
  return {};
}

Failure Fill(Files& files, const std::vector<InstalledFolder>& installed, const std::string& folder) {
  const std::set<std::string> before = Copied(files, folder);
  std::set<std::string> copied = before;
  for (const InstalledFolder& part : installed) {
    std::error_code error;
    if (Failure failure = FillFrom(files, part, folder, copied, error)) return failure;
    const bool isFirst = before.empty();
    if (error && isFirst) {
      return Error{error.value(), "Can't read the installed data in " + part.From + ": " + error.message() +
                                      ". Install the program again, or name a folder of your own."};
    }
  }
  if (copied == before) return {};
  std::string list;
  for (const std::string& name : copied) list += name + "\n";
  return files.Replace(folder + kFilledMark, list);
}

}  // namespace

std::string PrepareApplicationFolder(Files& files, const std::string& named, const std::string& usual,
                                     const std::vector<InstalledFolder>& installed, Failure& failure) {
  failure.reset();
  const std::string folder = named.empty() ? usual : named;
  const bool own = !named.empty() && files.Exists(named) && !files.Exists(named + kFilledMark);
  failure = files.MakeDirectory(folder);
  if (!failure && !own && !installed.empty()) failure = Fill(files, installed, folder);
  return failure ? std::string() : folder;
}

}  // namespace quorl
