// The protocol as clients speak it, against a radio that only remembers.
#include "remote/RigctlSession.h"

#include <gtest/gtest.h>

#include <optional>

namespace quorl {
namespace {

class RememberedRadio final : public RemoteRadio {
 public:
  double Hertz = 145000000;
  double Highest = 135048000;

  std::string Description() const override { return "a radio"; }
  double Frequency() const override { return Hertz; }
  double HighestFrequency() const override { return Highest; }
  RemoteOutcome Tune(double hertz) override {
    if (hertz < 0 || hertz > Highest) return RemoteOutcome::OutOfRange;
    Hertz = hertz;
    return RemoteOutcome::Done;
  }
  RemoteMode Mode() const override { return RemoteMode::AM; }
  std::int32_t Passband() const override { return 10000; }
  RemoteOutcome SetMode(RemoteMode, std::int32_t) override { return RemoteOutcome::Done; }
  std::int32_t Strength() const override { return -54; }
  double Volume() const override { return 0; }
  void SetVolume(double) override {}
  bool IsOn() const override { return true; }
  RemoteOutcome SwitchPower(bool) override { return RemoteOutcome::Done; }
};

class RigctlSessionTest : public testing::Test {
 protected:
  // What is answered to these bytes, which come at once.
  std::string Ask(const std::string& bytes) {
    std::string answers;
    for (std::size_t taken = 0, step = 1; step != 0 && !session_.Ended(); taken += step) {
      step = session_.Take(std::string_view(bytes).substr(taken), answers);
    }
    return answers;
  }

  RememberedRadio radio_;
  RigctlSession session_{radio_};
};

TEST_F(RigctlSessionTest, FrequencyIsSetAndReadInEitherForm) {
  EXPECT_EQ(Ask("\\chk_vfo\n"), "0\n");
  EXPECT_EQ(Ask("F 7050000.000000\n"), "RPRT 0\n");
  EXPECT_EQ(Ask("f\n"), "7050000\n");
  EXPECT_EQ(Ask("\\get_freq\r\n"), "7050000\n");
  EXPECT_EQ(Ask("+f\n"), "get_freq:\nFrequency: 7050000\nRPRT 0\n");
  EXPECT_EQ(Ask(";f\n"), "get_freq:;Frequency: 7050000;RPRT 0\n");
  EXPECT_EQ(Ask("+\\set_freq 7050000\n"), "set_freq: 7050000\nRPRT 0\n");
  EXPECT_EQ(Ask("+\\chk_vfo\n"), "ChkVFO: 0\n");
  EXPECT_EQ(Ask("+f f\n"), "get_freq:\nFrequency: 7050000\nRPRT 0\n7050000\n");
  EXPECT_EQ(Ask("F abc\n+F abc\n\\foo\n"), "RPRT -1\nset_freq: abc\nRPRT -1\nRPRT -11\n");
  EXPECT_EQ(Ask("q\n"), "RPRT 0\n");
  EXPECT_TRUE(session_.Ended());
}

}  // namespace
}  // namespace quorl
