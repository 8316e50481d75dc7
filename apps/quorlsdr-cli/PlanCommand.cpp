// quorlsdr-cli plan: what stands in band plans, and what is wrong with them.
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "Commands.h"
#include "Fault.h"
#include "interaction/PanelTexts.h"
#include "memories/PlanCheck.h"
#include "memories/PlanFormat.h"
#include "memories/modBandPlan.h"
#include "platform/linux/system/ApplicationFolder.h"
#include "platform/linux/system/LinuxFiles.h"
#include "platform/linux/system/UserDirectories.h"
#include "shared/InstalledData.h"
#include "support/Text.h"

namespace quorl::cli {
namespace {

constexpr int kWarned = 1;

struct PlanOptions {
  std::vector<std::string> Files;
  bool Json = false;
  bool Fix = false;
};

std::string StoredMode(std::int32_t mode) {
  if (mode < 0 || mode >= DemodMode::Count) return "mode " + std::to_string(mode);
  std::string name = DemodModeTexts[static_cast<std::size_t>(mode)].Caption;
  std::erase(name, '&');
  return name;
}

std::string NameOf(const std::string& path) {
  const std::string file = FileNameOf(path);
  return file.ends_with(".bpl") ? file.substr(0, file.size() - 4) : file;
}

// A plan of its own, or all of the application folder.
std::vector<std::string> PlanFiles(LinuxFiles& files, const PlanOptions& options, Failure& failure) {
  if (!options.Files.empty()) return options.Files;
  const UserDirectories directories =
      FindUserDirectories([](const char* name) -> const char* { return std::getenv(name); });
  Failure missing;
  const std::string data = FindInstalledData(files, missing);
  const std::string folder = PrepareApplicationFolder(files, "", directories.Data, FilledFrom(data), failure);
  if (failure && missing) failure = missing;
  std::vector<std::string> paths;
  for (const std::string& name : files.List(folder, ".bpl")) paths.push_back(folder + "/" + name);
  return paths;
}

BandPlan ReadPlan(const LinuxFiles& files, const std::string& path, Failure& failure) {
  BandPlan plan;
  plan.Name = plan.Caption = plan.Description = NameOf(path);
  plan.FileName = path;
  CreateBandPlanRecords(plan, "");
  clsINIFile file;
  file.init(files.Read(path, failure).value_or(""));
  ReadBandPlan(file, plan, [] {});
  return plan;
}

void ListPreset(const BandPlan& plan, const SubBand& band, const Preset& preset, bool asJson,
                nlohmann::ordered_json& rows) {
  const std::int32_t hertz = preset.Settings.FreqCurrent;
  const std::string mode = StoredMode(preset.Settings.DemodMode);
  if (asJson) {
    rows.push_back({{"plan", plan.Caption},
                    {"subband", band.Caption},
                    {"khz", hertz / 1000.0},
                    {"mode", mode},
                    {"description", preset.Description}});
  } else {
    std::printf("%-12s %-8s %12.3f  %-4s %s\n", plan.Caption.c_str(), band.Caption.c_str(), hertz / 1000.0,
                mode.c_str(), preset.Description.c_str());
  }
}

int List(const PlanOptions& options) {
  LinuxFiles files;
  Failure failure;
  nlohmann::ordered_json rows = nlohmann::ordered_json::array();
  for (const std::string& path : PlanFiles(files, options, failure)) {
    const BandPlan plan = ReadPlan(files, path, failure);
    if (failure) break;
    for (const SubBand& band : plan.SubBands) {
      for (const Preset& preset : band.Presets) {
        if (preset.Settings.FreqCurrent > 0) ListPreset(plan, band, preset, options.Json, rows);
      }
    }
  }
  if (failure) {
    PrintFault(failure->Text);
    return ExitCode::Refused;
  }
  if (options.Json) std::cout << rows.dump(2) << "\n";
  return ExitCode::Success;
}

// Line ends, byte order mark and the end of the last line; the file as it was stays beside it.
Failure Fix(LinuxFiles& files, const std::string& path, std::string& content) {
  if (FormatOf(content).IsSound()) return {};
  if (auto failure = files.Copy(path, path + ".bak")) return failure;
  const std::string mended = MendedFormat(content);
  if (auto failure = files.Replace(path, mended)) return failure;
  std::cout << path << ": mended; the file as it was is " << path << ".bak\n";
  content = mended;
  return {};
}

int CheckOne(LinuxFiles& files, const std::string& path, bool fix) {
  Failure failure;
  std::string content = files.Read(path, failure).value_or("");
  if (!failure && fix) failure = Fix(files, path, content);
  if (failure) {
    PrintFault(failure->Text);
    return ExitCode::Refused;
  }
  int result = ExitCode::Success;
  for (const PlanFinding& finding : CheckPlan(content, StoredMode)) {
    std::cout << path;
    if (finding.Line > 0) std::cout << ":" << finding.Line;
    std::cout << (finding.Warning ? ": warning: " : ": ") << finding.Text << "\n";
    if (finding.Warning) result = kWarned;
  }
  return result;
}

int Check(const PlanOptions& options) {
  LinuxFiles files;
  int worst = ExitCode::Success;
  for (const std::string& path : options.Files) worst = std::max(worst, CheckOne(files, path, options.Fix));
  return worst;
}

}  // namespace

void AddPlanCommand(CLI::App& app, int& exitCode) {
  CLI::App* command = app.add_subcommand("plan", "List and check band plans");
  command->require_subcommand(1);
  auto options = std::make_shared<PlanOptions>();

  CLI::App* list =
      command->add_subcommand("list", "Presets of one plan, or of all that the radio would load");
  list->add_option("FILE", options->Files, "a band plan (.bpl)")->expected(0, 1);
  list->add_flag("--json", options->Json, "as JSON");
  list->callback([options, &exitCode] { exitCode = List(*options); });

  CLI::App* check = command->add_subcommand(
      "check",
      "What a load takes from plans, and what is wrong; exit code 0 clean, 1 warnings, 2 unreadable");
  check->add_option("FILE", options->Files, "band plans (.bpl)")->required();
  check->add_flag("--fix", options->Fix,
                  "mends line ends, byte order mark and the end of the last line; keeps FILE.bak");
  check->callback([options, &exitCode] { exitCode = Check(*options); });
}

}  // namespace quorl::cli
