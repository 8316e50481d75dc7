#include "profile/modIniFiles.h"

#include "profile/ProfileText.h"
#include "support/Product.h"
#include "support/Text.h"
#include "support/TextEncoding.h"

namespace quorl {
namespace {

constexpr std::size_t kMostCharacters = 2047;

std::string ContentOf(const Files& files, const std::string& path, Failure& failure) {
  failure.reset();
  return files.Exists(path) ? files.Read(path, failure).value_or("") : std::string();
}

std::string Element(std::string value, std::int32_t element) {
  for (std::int32_t step = 1; step < element; ++step) {
    const auto comma = value.find(',');
    if (comma == std::string::npos) return {};
    value.erase(0, comma + 1);
  }
  return value.substr(0, value.find(','));
}

}  // namespace

Failure SaveProfileItems(Files& files, const std::string& path, const std::vector<ProfileItem>& items) {
  Failure failure;
  const std::string content = ContentOf(files, path, failure);
  if (failure) return failure;
  ProfileText text(content);
  for (const ProfileItem& item : items) text.Put(item.Section, item.Key, item.Value);
  const std::string changed = text.Text();
  return changed == content ? Failure() : files.Replace(path, changed);
}

void TellProfileFault(Dialogs& boxes, const std::string& routine, const Error& error) {
  boxes.ShowMessage({.Text = routine + NumberText(error.Code) + " " + error.Text,
                     .Title = kProductName,
                     .Icon = MessageIcon::Critical});
}

void ProfileSaveItem(Files& files, Dialogs& boxes, const std::string& section, const std::string& key,
                     const std::string& value, const std::string& fileName) {
  const Failure failure = SaveProfileItems(files, fileName, {{section, key, value}});
  if (failure) TellProfileFault(boxes, "ProfileSaveItem: ", *failure);
}

std::string ProfileGetItem(const Files& files, Dialogs& boxes, const std::string& section,
                           const std::string& key, const std::string& otherwise, const std::string& fileName,
                           std::int32_t element) {
  Failure failure;
  const ProfileText text(ContentOf(files, fileName, failure));
  if (failure) {
    TellProfileFault(boxes, "ProfileGetItemError: ", *failure);
    return {};
  }
  const std::string* found = text.Find(section, key);
  std::string value(FirstCharacters(found ? *found : otherwise, kMostCharacters));
  return element > 0 ? Element(std::move(value), element) : value;
}

}  // namespace quorl
