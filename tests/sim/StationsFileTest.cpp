// The stations file: what it may say, and the one message that a broken one gives.
#include "sim/StationsFile.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "sim/SimTestSupport.h"
#include "sim/SpeechClip.h"

namespace quorl {
namespace {

std::string Complaint(const std::string& text) {
  BandDefinition band;
  const Failure failure = ParseStations(text, "stations.ini", band);
  return failure ? failure->Text : "";
}

constexpr const char* kGood = "[station A]\nfrequency_khz = 7050\nmode = am\nprogramme = melody 3\n";

TEST(StationsFile, ReadsBandAndStations) {
  BandDefinition band;
  const std::string text =
      "# comment\r\n[band]\r\nseed = 9\nspark_dbm=-50\n\n[station  Two Words ]\n frequency_khz = 7050.25\n"
      "mode = usb\nlevel_dbm = -61.5\nprogramme = speech hello , tone 440 2, pause 0.5,melody 3\n; end";
  ASSERT_FALSE(ParseStations(text, "f", band));
  EXPECT_EQ(band.Seed, 9.0);
  EXPECT_EQ(band.SparkDbm, -50.0);
  ASSERT_EQ(band.Stations.size(), 1U);
  const StationDefinition& station = band.Stations[0];
  EXPECT_EQ(station.Name, "Two Words");
  EXPECT_EQ(station.FrequencyKhz, 7050.25);
  EXPECT_EQ(station.Mode, StationMode::Usb);
  EXPECT_EQ(station.LevelDbm, -61.5);
  ASSERT_EQ(station.Programme.size(), 4U);
  EXPECT_EQ(station.Programme[0].Clip, "hello");
  EXPECT_EQ(station.Programme[1].Hz, 440.0);
  EXPECT_EQ(station.Programme[3].Seconds, 3.0);
}

TEST(StationsFile, AFaultNamesFileLineAndCure) {
  struct Case {
    std::string Text, Line, Says, Cure;
  };
  const std::string good = kGood;
  const Case cases[] = {
      {"seed = 1\n", "line 1", "\"seed = 1\" stands before the first section", "put a line [band]"},
      {"[bands]\n", "line 1", "\"[bands]\" is no section", "[band] or [station NAME]"},
      {"[station ]\n", "line 1", "is no section", "[station NAME]"},
      {"[band]\n\nloud\n", "line 3", "\"loud\" is neither", "key = value"},
      {"[band]\nseeds = 4\n", "line 2", "\"seeds\" is no key of [band]", "seed, noise_dbm_hz"},
      {good + "level_dbm = loud\n", "line 5", "level_dbm is \"loud\"", "a number from -160 to 0"},
      {good + "level_dbm = 1\n", "line 5", "level_dbm is \"1\"", "a number from -160 to 0"},
      {good + "level_dbm = nan\n", "line 5", "level_dbm is \"nan\"", "a number from"},
      {good + "wpm = 20x\n", "line 5", "wpm is \"20x\"", "5 to 60"},
      {good + "volume = 3\n", "line 5", "\"volume\" is no key", "level_dbm"},
      {good + "mode = ssb\n", "line 5", "mode is \"ssb\"", "am, usb, lsb"},
      {good + "programme = melody\n", "line 5", "\"melody\"", "melody SECONDS"},
      {good + "programme = melody 3, tone 9000 1\n", "line 5", "\"tone 9000 1\"", "20 to 3400 Hz"},
      {good + "programme = jazz 3\n", "line 5", "\"jazz 3\"", "speech CLIP"},
      {good + "programme = melody 3 4\n", "line 5", "\"melody 3 4\"", "melody SECONDS"},
      {"\n[station B]\nmode = am\n" + good, "line 2", "station \"B\" has no frequency",
       "frequency_khz = 7050"},
      {"[station B]\nfrequency_khz = 1\n", "line 1", "station \"B\" has no mode", "mode = am"},
      {"[station B]\nfrequency_khz = 1\nmode = lsb\n", "line 1", "nothing to send", "programme = melody"},
      {"[station B]\nfrequency_khz = 1\nmode = cw\n", "line 1", "has no text", "text = CQ"},
  };
  for (const Case& each : cases) {
    const std::string text = Complaint(each.Text);
    EXPECT_EQ(text.rfind("stations.ini, " + each.Line + ": ", 0), 0U) << text;
    EXPECT_NE(text.find(each.Says), std::string::npos) << text;
    EXPECT_NE(text.find(each.Cure), std::string::npos) << text;
    EXPECT_EQ(text.find('\n'), std::string::npos) << text;
  }
  BandDefinition band;
  band.Seed = 5.0;
  ASSERT_TRUE(ParseStations("[band]\nseed = 6\nseed = x\n", "f", band));
  EXPECT_EQ(band.Seed, 5.0) << "a broken file changes nothing";
}

TEST(StationsFile, RandomDamageIsReadOrReportedNeverMore) {
  VirtualFiles files = DemoFiles();
  Failure failure;
  const std::string whole = files.Read("demo/stations.ini", failure).value();
  EXPECT_EQ(Complaint(whole), "");
  std::mt19937 random(4711);
  const auto pick = [&random](std::size_t count) { return random() % count; };
  int refused = 0;
  for (int round = 0; round < 3000; ++round) {
    std::string text = whole.substr(pick(whole.size()), pick(2000));
    for (std::size_t edits = pick(12); edits > 0 && !text.empty(); --edits) {
      const std::size_t at = pick(text.size());
      switch (pick(3)) {
        case 0:
          text[at] = static_cast<char>(pick(256));
          break;
        case 1:
          text.erase(at, pick(20));
          break;
        default:
          text.insert(at, text.substr(pick(text.size()), pick(30)));
          break;
      }
    }
    const std::string complaint = Complaint(text);
    if (complaint.empty()) continue;
    ++refused;
    ASSERT_EQ(complaint.rfind("stations.ini, line ", 0), 0U) << complaint;
    ASSERT_LT(complaint.size(), 400U) << complaint;
  }
  EXPECT_GT(refused, 1000);
}

TEST(LoadBand, TellsWhatIsMissing) {
  const auto complaint = [](VirtualFiles& files) {
    Failure failure;
    EXPECT_EQ(LoadBand(files, "demo", failure), nullptr);
    return failure ? failure->Text : "";
  };
  VirtualFiles clip = DemoFiles();
  clip.Put("demo/stations.ini", std::string(kGood) + "programme = speech nobody\n");
  EXPECT_EQ(complaint(clip).rfind(
                "demo/stations.ini, line 5: there is no speech clip \"nobody\"; write one of cq-lsb, ", 0),
            0U);
  VirtualFiles fm = DemoFiles();
  fm.Put("demo/stations.ini", "[station F]\nfrequency_khz = 29600\nmode = fm\nprogramme = melody 61\n");
  EXPECT_NE(complaint(fm).find("line 4: the programme of an fm station lasts longer than 60 s"),
            std::string::npos);
  VirtualFiles broken = DemoFiles();
  broken.Put("demo/speech/welcome.wav", "RIFFxxxxWAVEfmt ");
  EXPECT_NE(complaint(broken).find("demo/speech/welcome.wav holds no samples"), std::string::npos);
  VirtualFiles none;
  EXPECT_NE(complaint(none), "");
}

TEST(SpeechClip, DecodesMuLawAndRefusesTheRest) {
  // Full scale, the smallest steps and zero of both signs.
  const std::string format("\x10\0\0\0\7\0\1\0\x40\x1f\0\0\x40\x1f\0\0\1\0\x08\0", 20);
  const std::string file = std::string("RIFF\x30\0\0\0WAVEfmt ", 16) + format +
                           std::string("data\6\0\0\0", 8) + "\x80\x01\xFF\x7F\xFE\x7E";
  std::vector<float> samples;
  const auto decode = [&samples](const std::string& content) {
    VirtualFiles files;
    files.Put("clip", content);
    Failure failure;
    return DecodeSpeech(*files.Open("clip", OpenMode::Read, failure), samples);
  };
  ASSERT_FALSE(decode(file));
  const std::vector<float> expected = {32124.0F / 32768, -31100.0F / 32768, 0.0F, 0.0F,
                                       8.0F / 32768,     -8.0F / 32768};
  ASSERT_EQ(samples.size(), expected.size());
  for (std::size_t n = 0; n < expected.size(); ++n) EXPECT_EQ(samples[n], expected[n]) << n;

  for (std::size_t length = 0; length < 44; ++length) EXPECT_TRUE(decode(file.substr(0, length))) << length;
  std::string pcm = file;
  pcm[20] = 1;
  EXPECT_NE(decode(pcm)->Text.find("clip has another sample format"), std::string::npos);
  std::string endless = file + std::string(5'000'000, '\xFF');
  endless.replace(40, 4, "\xFF\xFF\xFF\x7F", 4);
  EXPECT_NE(decode(endless)->Text.find("clip is longer than ten minutes"), std::string::npos);
}

}  // namespace
}  // namespace quorl
