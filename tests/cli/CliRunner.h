// Runs the built quorlsdr-cli in a folder of its own.
#pragma once

#include <sys/wait.h>

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "platform/linux/system/LinuxFiles.h"
#include "recorder/files/WavReader.h"
#include "recorder/files/WavWriter.h"

namespace quorl::test {

struct CliResult {
  int ExitCode = -1;
  std::string Output;
  std::string Errors;
};

class CliTest : public testing::Test {
 protected:
  CliTest()
      : folder_(std::filesystem::path(testing::TempDir()) /
                (std::string("cli-") +
                 testing::UnitTest::GetInstance()->current_test_info()->test_suite_name() + "-" +
                 testing::UnitTest::GetInstance()->current_test_info()->name() + "-" +
                 std::to_string(getpid()))) {
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directory(folder_);
  }
  ~CliTest() override {
    for (const char* end : {"", ".out", ".err"}) std::filesystem::remove_all(folder_.string() + end);
  }

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }

  // `arguments` as a shell takes them, redirections too, in the test's folder; `before` may hold shell
  // commands that end with a semicolon.
  CliResult Cli(const std::string& arguments, const std::string& before = "") const {
    return Run(QUORL_CLI, arguments, before);
  }
  CliResult Run(const std::string& program, const std::string& arguments, const std::string& before) const {
    const std::string out = folder_.string() + ".out", err = folder_.string() + ".err";
    const std::string command = "cd '" + folder_.string() + "' && { " + before + " </dev/null >'" + out +
                                "' 2>'" + err + "' '" + program + "' " + arguments + "; }";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Slurp(out), Slurp(err)};
  }

  static std::string Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  void Put(const std::string& name, const std::string& content) const {
    std::ofstream(Path(name), std::ios::binary) << content;
  }
  std::string Get(const std::string& name) const { return Slurp(Path(name)); }

  void PutWav(const std::string& name, const std::vector<std::int16_t>& samples, int channels = 1) const {
    Failure failure;
    auto writer = WavWriter::Create(files_, Path(name), channels, 48000, failure);
    ASSERT_FALSE(failure) << failure->Text;
    failure = writer->Write(samples.data(), static_cast<int>(samples.size()));
    if (!failure) failure = writer->Commit();
    ASSERT_FALSE(failure) << failure->Text;
  }
  std::vector<std::int16_t> GetWav(const std::string& name) const {
    Failure failure;
    auto reader = WavReader::Open(files_, Path(name), WavNeeds{48000, 1}, failure);
    if (failure) {
      ADD_FAILURE() << failure->Text;
      return {};
    }
    std::vector<std::int16_t> samples(static_cast<std::size_t>(*reader->Frames()));
    reader->Read(samples.data(), static_cast<int>(samples.size()), failure);
    EXPECT_FALSE(failure);
    return samples;
  }
  // Words for the shell: files take `blocks` of 512 bytes and no more. What a program writes down of itself
  // when it is built for coverage would be cut off, too, and with it what others have written there.
  static std::string SmallFiles(int blocks) {
    return "export GCOV_PREFIX=/tmp/quorlsdr-cut-off GCOV_ERROR_FILE=/dev/null; ulimit -f " +
           std::to_string(blocks) + ";";
  }
  // Names of the files in the folder, sorted, with spaces between.
  std::string Files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    std::string all;
    for (const std::string& name : names) all += (all.empty() ? "" : " ") + name;
    return all;
  }

  mutable LinuxFiles files_;
  std::filesystem::path folder_;
};

// A refusal or failure is told in exactly one line that holds `named`.
inline void ExpectOneLine(const CliResult& result, int exitCode, const std::string& named) {
  EXPECT_EQ(result.ExitCode, exitCode) << result.Errors;
  EXPECT_EQ(result.Output, "");
  EXPECT_EQ(result.Errors.find('\n'), result.Errors.size() - 1) << result.Errors;
  EXPECT_NE(result.Errors.find(named), std::string::npos) << result.Errors << "doesn't hold " << named;
}

}  // namespace quorl::test
