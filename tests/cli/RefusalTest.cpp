// What `quorlsdr-cli` says and leaves behind where it can't do what it was asked.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <thread>

#include "cli/CliRunner.h"
#include "cli/Signals.h"
#include "recorder/files/WavBytes.h"

namespace quorl::test {
namespace {

const std::vector<std::int16_t> Short(100, 1);

class RefusalTest : public CliTest {
 protected:
  RefusalTest() { Put("out.wav", "old content"); }

  // The output is as it was and nothing lies beside it.
  void ExpectNothingDone(const std::string& files) const {
    EXPECT_EQ(Get("out.wav"), "old content");
    EXPECT_EQ(Files(), files);
  }
};

struct InputCase {
  std::string Bytes;
  const char* Told;
};

TEST_F(RefusalTest, BadInputIsNamedInOneLine) {
  const std::vector<InputCase> cases = {
      {"text, no sound", "not a RIFF/WAVE file"},
      {WavFile(Short, {1, 1, 44100}), "44100 Hz; 48000 Hz is needed"},
      {WavFile(Short, {1, 1, 48000, 8}), "8 bits; 16 are needed"},
      {WavFile(Short, {1, 5}), "5 channels; 1 to 2 are needed"},
      {WavFile(Short).substr(0, 30), "complete WAV header"},
      {WavFile(Short).substr(0, 100), "complete file is needed"},
      {Riff(Chunk("fmt ", FormatBody({})) + Chunk("data", "odd")), "whole number of frames"},
  };
  for (const InputCase& bad : cases) {
    SCOPED_TRACE(bad.Told);
    Put("bad.wav", bad.Bytes);
    const CliResult result = Cli("receive bad.wav out.wav");
    ExpectOneLine(result, 2, "bad.wav: ");
    EXPECT_NE(result.Errors.find(bad.Told), std::string::npos) << result.Errors;
    ExpectNothingDone("bad.wav out.wav");
  }
  ExpectOneLine(Cli("receive missing.wav out.wav"), 2, "missing.wav: ");
  ExpectOneLine(Cli("receive . out.wav"), 2, ".: Is a directory");
  ExpectOneLine(Cli("receive \"$(printf 'two\\nlines')\" out.wav"), 2, "two?lines: ");
  ExpectNothingDone("bad.wav out.wav");
}

TEST_F(RefusalTest, RawInputThatEndsWithinAFrameLeavesTheOutputAlone) {
  Put("odd.raw", std::string(10001, 'x'));
  ExpectOneLine(Cli("receive - out.wav < odd.raw"), 2, "standard input: ");
  ExpectNothingDone("odd.raw out.wav");
}

TEST_F(RefusalTest, MonoHasNoIAndQ) {
  PutWav("mono.wav", Short);
  ExpectOneLine(Cli("receive --model iq mono.wav out.wav"), 2, "mono.wav: has 1 channel");
  ExpectOneLine(Cli("receive --model iq --channels 1 - out.wav"), 2, "standard input: has 1 channel");
  ExpectNothingDone("mono.wav out.wav");
}

TEST_F(RefusalTest, UnwritableTargetIsNamedInOneLine) {
  PutWav("in.wav", Short);
  ExpectOneLine(Cli("receive in.wav no/folder/out.wav"), 2, "no/folder/out.wav: ");
  ExpectOneLine(Cli("receive in.wav ."), 2, ".: Is a directory");
  ExpectNothingDone("in.wav out.wav");
}

TEST_F(RefusalTest, OptionsOutOfRangeAreNamedInOneLine) {
  PutWav("in.wav", Short);
  const std::vector<std::string> cases = {"--model drt2",
                                          "--mode cw",
                                          "--filter-mode 5",
                                          "--filter-mode -1",
                                          "--filter 2300:300",
                                          "--filter 300",
                                          "--filter 300:2300:1",
                                          "--filter -5:2300",
                                          "--filter 300:12001",
                                          "--bfo 12001",
                                          "--bfo -12001",
                                          "--bfo 1.5",
                                          "--if-filter narrow",
                                          "--if-filter man:50",
                                          "--if-filter man:50:6001",
                                          "--agc medium",
                                          "--notch audio:1000",
                                          "--notch audio:6001:100",
                                          "--notch if:-6001:100",
                                          "--notch auto:0",
                                          "--notch auto:5001",
                                          "--nb 10001",
                                          "--nb -1",
                                          "--volume 8001",
                                          "--volume -10001",
                                          "--channels 2",
                                          "--bfo 99999999999",
                                          "--volume ''"};
  for (const std::string& options : cases) {
    SCOPED_TRACE(options);
    ExpectOneLine(Cli("receive " + options + " in.wav out.wav"), 2, options.substr(0, options.find(' ')));
  }
  ExpectOneLine(Cli("receive --channels 3 - out.wav"), 2, "--channels");
  for (const std::string ignored : {"--quadrature", "--no-normalise"}) {
    ExpectOneLine(Cli("filter --low 300 --high 900 --reject " + ignored), 2, "--reject");
  }
  ExpectOneLine(Cli("receive in.wav"), 2, "OUTPUT");
  ExpectOneLine(Cli("receive --no-such-option in.wav out.wav"), 2, "--no-such-option");
  ExpectOneLine(Cli("transmit in.wav out.wav"), 2, "transmit");
  ExpectOneLine(Cli(""), 2, "subcommand");
  ExpectNothingDone("in.wav out.wav");
}

TEST_F(RefusalTest, FullDiskIsAFailureThatLeavesNothingBehind) {
  PutWav("in.wav", Tone(12500.0, 1000.0, 100000));
  // The limit on file sizes, in blocks of 512 bytes, ends the output in its middle.
  ExpectOneLine(Cli("receive in.wav out.wav", SmallFiles(100)), 1, "out.wav: ");
  ExpectNothingDone("in.wav out.wav");
  if (std::filesystem::is_character_file("/dev/full")) {
    ExpectOneLine(Cli("receive in.wav - >/dev/full"), 1, "standard output: ");
    ExpectOneLine(Cli("filter --low 300 --high 2300 >/dev/full"), 1, "standard output: ");
  }
}

TEST_F(RefusalTest, InterruptionLeavesNothingBehind) {
  const std::string errors = folder_.string() + ".err";
  for (std::vector<const char*> arguments :
       {std::vector<const char*>{QUORL_CLI, "receive", "-", "out.wav"},
        {QUORL_CLI, "spectrum", "-", "--csv", "table.csv", "--png", "out.wav"}}) {
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    arguments.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
      dup2(pipe[0], STDIN_FILENO);
      ::close(pipe[1]);
      const int err = ::open(errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
      dup2(err, STDERR_FILENO);
      if (chdir(folder_.c_str()) == 0) execv(QUORL_CLI, const_cast<char* const*>(arguments.data()));
      _exit(127);
    }
    ::close(pipe[0]);
    // The child waits for samples that never come; its temporary file shows that it has begun.
    while (Files() == "out.wav" && waitpid(child, nullptr, WNOHANG) == 0) std::this_thread::yield();
    kill(child, SIGTERM);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ::close(pipe[1]);
    ASSERT_TRUE(WIFEXITED(status));
    ExpectOneLine({WEXITSTATUS(status), "", Slurp(errors)}, 1, "out.wav: interrupted");
    ExpectNothingDone("out.wav");
  }
}

}  // namespace
}  // namespace quorl::test
