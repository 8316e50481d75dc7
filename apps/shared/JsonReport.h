// One line of JSON for who measures the program.
#pragma once

#include <concepts>
#include <nlohmann/json.hpp>
#include <string>

namespace quorl {

// Keys stay in the order in which they come; a number that is none (0 by 0) becomes null.
class JsonReport {
 public:
  JsonReport();
  JsonReport& Add(const std::string& key, std::integral auto value) {
    line_[key] = value;
    return *this;
  }
  // With at most `decimals` after the point.
  JsonReport& Add(const std::string& key, double value, int decimals);
  // To standard error.
  void Print() const;

 private:
  nlohmann::ordered_json line_;
};

}  // namespace quorl
