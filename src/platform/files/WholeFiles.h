// Whole files out of what a machine does with open ones.
#pragma once

#include "platform/Files.h"

namespace quorl {

class WholeFiles : public Files {
 public:
  std::optional<std::string> Read(const std::string& path, Failure& failure) const override;
  Failure Replace(const std::string& path, const std::string& content) override;
  Failure Append(const std::string& path, const std::string& content) override;
  Failure Copy(const std::string& from, const std::string& to) override;
};

}  // namespace quorl
