// The lock of a settings file among the receivers of one test.
#pragma once

#include <memory>
#include <set>
#include <string>
#include <utility>

#include "platform/InstanceLock.h"

namespace quorl {

// Locks that share one table see each other, as programs on one machine do.
class VirtualInstanceLock : public InstanceLock {
 public:
  using Table = std::set<std::string>;

  explicit VirtualInstanceLock(std::shared_ptr<Table> table) : table_(std::move(table)) {}
  ~VirtualInstanceLock() override {
    if (held_) {
      table_->erase(path_);
    }
  }
  VirtualInstanceLock(const VirtualInstanceLock&) = delete;
  VirtualInstanceLock& operator=(const VirtualInstanceLock&) = delete;

  Failure Acquire(const std::string& path) override {
    if (!held_) {
      if (!table_->insert(path).second) {
        return Error{11, path + " is in use by another running program"};
      }
      path_ = path;
      held_ = true;
    }
    return {};
  }
  bool IsHeld() const override { return held_; }

 private:
  std::shared_ptr<Table> table_;
  std::string path_;
  bool held_ = false;
};

}  // namespace quorl
