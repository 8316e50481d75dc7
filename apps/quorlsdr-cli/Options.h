// Options of the commands: a text, a range or a choice, refused in one line where it doesn't fit.
#pragma once

#include <CLI/CLI.hpp>
#include <array>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "OptionText.h"

namespace quorl::cli {

// Index: SDRModel.
inline constexpr std::array<std::string_view, 4> kModelNames = {"drt1", "elektor", "iq", "real2iq"};

inline constexpr double kHighestKhz = 214748.3647;  // that can be tuned

// `shape` stands behind the name in the help; `take` turns the text into a value.
CLI::Option* AddText(CLI::App& command, const std::string& name, const std::string& shape,
                     const std::string& help, std::function<void(const std::string&)> take);
CLI::Option* AddWhole(CLI::App& command, const std::string& name, Range range, const std::string& help,
                      std::function<void(int)> take);
CLI::Option* AddNumber(CLI::App& command, const std::string& name, const std::string& shape, double low,
                       double high, const std::string& help, std::function<void(double)> take);
CLI::Option* AddChoice(CLI::App& command, const std::string& name, std::span<const std::string_view> names,
                       const std::string& help, std::int32_t& value);

}  // namespace quorl::cli
