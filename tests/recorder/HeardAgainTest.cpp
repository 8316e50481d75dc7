// What comes back from a recording is what was heard.
#include <cmath>
#include <random>

#include "receiver/Receiver.h"
#include "recorder/DeckRig.h"

namespace quorl::test {
namespace {

constexpr int kHalfBlocks = 64;
constexpr std::size_t kFilterDelay = 1023;  // of the audio filter that a played block passes

class HeardAgain : public DeckRig {
 protected:
  HeardAgain() {
    radio_.Initialise();
    radio_.SetDemodMode(DemodMode::USB);
    radio_.SwitchAGC(false);
  }
  // Blocks of noise through the radio, whatever the deck does meanwhile; gives what was heard.
  std::vector<std::int16_t> Listen(int blocks) {
    std::normal_distribution<double> noise(0.0, 2000.0);
    std::vector<std::int16_t> heard;
    for (int i = 0; i < blocks; ++i) {
      std::array<std::int16_t, SamplesPerEvent> left, right{};
      for (std::int16_t& sample : left)
        sample = static_cast<std::int16_t>(std::clamp(noise(random_), -32000.0, 32000.0));
      radio_.Pump.SoundCard_DataReady(left.data(), right.data());
      heard.insert(heard.end(), left.begin(), left.end());
      Queue.AdvanceBy(kBlock);
    }
    return heard;
  }
  // Correlation of a recording at 48 kHz / `decimator` through filter `mode` with what was heard.
  double Correlation(std::int32_t decimator, std::int32_t mode) {
    radio_.SetFilterMode(mode);
    radio_.Housekeeping();
    Listen(4);
    Deck.SetDecimator(decimator);
    Deck.OpenRecording();
    const std::vector<std::int16_t> heard = Listen(kHalfBlocks);
    Deck.StopPlayer();
    Boxes.MessageAnswers = {MessageAnswer::Yes};
    Deck.Save();
    Deck.TakeName(kSaved);
    EXPECT_EQ(Deck.OpenFile(), 0);
    Queue.AdvanceBy(std::chrono::milliseconds(100));
    Deck.Play();
    const std::vector<std::int16_t> again = Listen(kHalfBlocks);
    Deck.CloseFile();
    double sum = 0.0, first = 0.0, second = 0.0;
    for (std::size_t n = 4096; n + kFilterDelay < again.size(); ++n) {
      const double a = heard[n], b = again[n + kFilterDelay];
      sum += a * b;
      first += a * a;
      second += b * b;
    }
    return sum / std::sqrt(first * second);
  }

 private:
  std::mt19937 random_{7};
  NoSoundOutput sound_;
  Receiver radio_{Clock, sound_, Deck, [] {}};
};

TEST_F(HeardAgain, IsTheSameWhereTheRateHoldsTheFilter) {
  for (const std::int32_t decimator : {1, 2, 4, 8, 16}) {
    for (std::int32_t mode = 0; mode < FilterModeCount; ++mode) {
      const std::int32_t edge = FilterDefaults[static_cast<std::size_t>(mode)].High;
      if (2 * edge > 48000 / decimator) continue;  // folds
      EXPECT_GT(Correlation(decimator, mode), 0.99) << decimator << " " << mode;
    }
  }
  EXPECT_LT(Correlation(16, 2), 0.9);
}

}  // namespace
}  // namespace quorl::test
