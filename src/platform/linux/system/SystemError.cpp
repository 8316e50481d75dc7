#include "platform/linux/system/SystemError.h"

#include <cerrno>
#include <system_error>

namespace quorl {
namespace {

struct Advice {
  int Number;
  const char* Text;
};

constexpr Advice kAdvice[] = {
    {ENOENT, "Check that the name is right and that its directory exists."},
    {ENOTDIR, "Check that every part of the path before the last is a directory."},
    {EISDIR, "Name a file, not a directory."},
    {EACCES, "Check the permissions of the file and of its directory."},
    {EPERM, "Check the permissions of the file and of its directory."},
    {EROFS, "Choose a place that is not write protected."},
    {ENOSPC, "Free some space on the disk and try again."},
    {EDQUOT, "Free some of your disk quota and try again."},
    {EFBIG, "Choose a disk that takes files of this size."},
    {EIO, "The disk or device reports a fault; check its connection and its health."},
    {ENAMETOOLONG, "Choose a shorter name."},
    {EMFILE, "Too many files are open; close some and try again."},
};

const char* AdviceFor(int number) {
  for (const Advice& advice : kAdvice) {
    if (advice.Number == number) return advice.Text;
  }
  return "Try again or choose another one.";
}

}  // namespace

Error SystemError(const std::string& what, int number) {
  return SystemError(what, number, AdviceFor(number));
}

Error SystemError(const std::string& what, int number, const std::string& advice) {
  return {number, "Can't " + what + ": " + std::generic_category().message(number) + ". " + advice};
}

}  // namespace quorl
