#include "config/SettingsStore.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

#include "platform/files/FileInstanceLock.h"
#include "platform/virtual/VirtualFiles.h"

namespace quorl {
namespace {

constexpr char kPath[] = "/home/me/.config/quorlsdr/settings.ini";

class Store : public ::testing::Test {
 protected:
  SettingsStore Open() {
    SettingsStore store(files, kPath, nullptr, [this](const std::string& line) { log.push_back(line); });
    EXPECT_FALSE(store.Load());
    return store;
  }
  std::string Content() {
    Failure failure;
    return files.Read(kPath, failure).value_or("(" + failure.value_or(Error{}).Text + ")");
  }

  VirtualFiles files;
  std::vector<std::string> log;
};

TEST_F(Store, KeepsOrderSpellingCommentsAndUnknownKeys) {
  files.Put(
      kPath,
      "# mine\n\n[frmMain]\nFilterHi = 5000 \nFromTheFuture=7\n\n; second\n[DDSAD9951]\nCLKIn=50000000\n");
  auto store = Open();
  EXPECT_EQ(store.GetSetting("FRMMAIN", "filterhi", "x"), "5000");
  EXPECT_EQ(store.GetSetting("DDSAD9951", "ClkIn", "x"), "50000000");
  EXPECT_EQ(store.GetSetting("frmMain", "missing", "default"), "default");
  store.SaveSetting("ddsad9951", "clkin", "360096000");
  store.SaveSetting("frmMain", "FilterLo", "50");
  store.SaveSetting("DDSSerialIF", "PortNo", "1");
  EXPECT_FALSE(store.Save());
  EXPECT_EQ(Content(),
            "# mine\n\n[frmMain]\nFilterHi=5000\nFromTheFuture=7\n\n; second\nFilterLo=50\n"
            "[DDSAD9951]\nCLKIn=360096000\n[DDSSerialIF]\nPortNo=1\n");
  EXPECT_TRUE(log.empty());
}

TEST_F(Store, KeepsBrokenLinesAsTheyStandAndSaysWhich) {
  files.Put(
      kPath,
      "\xEF\xBB\xBF[a]\r\nstray\r\nk=1\r\nbad=\\q\r\nk=2\r\n[b\r\nlost=1\r\n[a]\r\nm=\\x4\r\nn=\\x41\r\n");
  auto store = Open();
  EXPECT_EQ(store.Serialise(), "[a]\nstray\nk=2\nbad=\\q\nm=\\x4\nn=A\n[b\nlost=1\n");
  ASSERT_EQ(log.size(), 5U);
  EXPECT_EQ(log[0],
            std::string(kPath) + ", line 2 isn't a setting and stays in the file as it stands: \"stray\"");
  EXPECT_NE(log[2].find("line 6"), std::string::npos);
  EXPECT_NE(log[3].find("lost=1"), std::string::npos);
  store.SaveSetting("a", "new", "1");
  store.SaveSetting("[b", "new", "1");
  EXPECT_FALSE(store.Save());
  const std::string saved = "[a]\nstray\nk=2\nbad=\\q\nm=\\x4\nn=A\nnew=1\n[b\nlost=1\n[[b]\nnew=1\n";
  EXPECT_EQ(Content(), saved);
  EXPECT_EQ(Open().Serialise(), saved) << "and from then on";
}

TEST_F(Store, AnyTextComesBackAsItWas) {
  std::mt19937 random(2);
  const std::string alphabet("a\n\r\t =[]#;\\x4\0\xC3\xA4\x7F\"", 19);
  const auto text = [&] {
    std::string result;
    for (auto length = random() % 6; length > 0; --length) result += alphabet[random() % alphabet.size()];
    return result;
  };
  SettingsStore store;
  std::map<std::pair<std::string, std::string>, std::string> model;
  const auto lower = [](std::string word) {
    for (char& c : word) c = c == 'A' ? 'a' : c;
    return word;
  };
  for (int i = 0; i < 2000; ++i) {
    const auto section = text(), key = text(), value = text();
    store.SaveSetting(section, key, value);
    model[{lower(section), lower(key)}] = value;
  }
  SettingsStore again;
  again.Parse(store.Serialise());
  for (const auto& [name, value] : model) {
    ASSERT_EQ(again.GetSetting(name.first, name.second, "(missing)"), value);
  }
  EXPECT_EQ(again.Serialise(), store.Serialise());
}

TEST_F(Store, ALineWithItsBlanksComesThroughASave) {
  files.Put(kPath, "  COM9 lost\n[DDSSerialIF]\n\tCOM1 /dev/ttyUSB0  \nPortNo=1\n");
  auto store = Open();
  store.SaveSetting("DDSSerialIF", "PortNo", "2");
  EXPECT_FALSE(store.Save());
  EXPECT_EQ(Content(), "  COM9 lost\n[DDSSerialIF]\n\tCOM1 /dev/ttyUSB0  \nPortNo=2\n");
}

TEST_F(Store, LoadRemovesWhatKillsHaveLeftButOnlyUnderTheLock) {
  files.Put(kPath, "[a]\nk=1\n");
  files.Put(kPath + std::string(".77.new"), "[a]\nk=");
  FileInstanceLock lock(files), other(files);
  ASSERT_FALSE(other.Acquire(kPath));
  SettingsStore refused(files, kPath, &lock);
  EXPECT_TRUE(refused.Load());
  EXPECT_TRUE(files.Exists(kPath + std::string(".77.new"))) << "the other program may be writing it";
  SettingsStore store(files, kPath, &other);
  EXPECT_FALSE(store.Load());
  EXPECT_FALSE(files.Exists(kPath + std::string(".77.new")));
}

// Kills at each step of a save: the old settings or the new ones, and nothing beside after the next load.
TEST_F(Store, ASaveThatIsKilledCostsNothingButItself) {
  for (int step = 0; step < 4; ++step) {
    files.Put(kPath, "[a]\nk=1\n");
    {
      FileInstanceLock lock(files);
      SettingsStore store(files, kPath, &lock);
      ASSERT_FALSE(store.Load());
      store.SaveSetting("a", "k", "2");
      files.KillAfter(step + 1);  // the directory's step comes first
      EXPECT_THROW(store.Save(), Killed) << step;
    }
    files.Revive();
    FileInstanceLock lock(files);
    SettingsStore store(files, kPath, &lock);
    ASSERT_FALSE(store.Load());
    EXPECT_EQ(store.GetSetting("a", "k", ""), "1");
    EXPECT_EQ(files.List("/home/me/.config/quorlsdr", ".new").size(), 0u) << step;
  }
}

TEST_F(Store, WhatIsNoOrdinaryFileIsRefused) {
  files.PutPipe(kPath, "[a]\nk=1\n");
  SettingsStore store(files, kPath);
  EXPECT_NE(store.Load()->Text.find("no ordinary file"), std::string::npos);
  store.SaveSetting("a", "k", "2");
  EXPECT_TRUE(store.Save());
}

// Whatever happened to the file, the program starts, and what it then saves can be read again.
TEST_F(Store, SurvivesTenThousandEditsCutAnywhere) {
  std::mt19937 random(3);
  std::string text;
  for (int s = 0; s < 3; ++s) {
    text += "[Section" + std::to_string(s) + "]\n";
    for (int k = 0; k < 10; ++k) {
      text += "Key" + std::to_string(k) + "=" + std::to_string(random()) + "\\x20\\n\n";
    }
  }
  const std::string whole = text;
  for (int i = 0; i < 10000; ++i) {
    if (i % 50 == 0) text = whole;
    const auto at = random() % (text.size() + 1);
    switch (random() % 3) {
      case 0:
        text.insert(at, 1, static_cast<char>(random() % 256));
        break;
      case 1:
        text.erase(at, random() % 20);
        break;
      default:
        text.insert(at, text.substr(random() % (text.size() + 1), random() % 40));
    }
    SettingsStore store, again;
    store.Parse(text.substr(0, random() % (text.size() + 1)));
    store.SaveSetting("Section1", "New", "value");
    again.Parse(store.Serialise());
    ASSERT_EQ(again.GetSetting("section1", "new", ""), "value");
    ASSERT_EQ(again.Serialise(), store.Serialise());
  }
}

TEST_F(Store, ACutFileKeepsEveryWholeLineBeforeTheCut) {
  const std::string text = "[a]\nfirst=1\nsecond=2\n[b]\nthird=3\n";
  for (std::size_t cut = 0; cut <= text.size(); ++cut) {
    SettingsStore store;
    store.Parse(text.substr(0, cut));
    EXPECT_EQ(store.GetSetting("a", "first", ""), cut >= 11 ? "1" : "") << cut;
    EXPECT_EQ(store.GetSetting("a", "second", ""), cut >= 20 ? "2" : "") << cut;
    EXPECT_EQ(store.GetSetting("b", "third", ""), cut >= 32 ? "3" : "") << cut;
  }
}

TEST_F(Store, TypedReadsKeepTheValueWhereTheTextIsNone) {
  SettingsStore store;
  store.Parse(
      "[s]\nint=12\nbig=2147483648\nreal=0.5\nyes=TRUE\nzero=0\nword=hello\nred=255\nwide=16777216\nhuge="
      "1e39\n");
  std::int32_t number = 5;
  store.Read("s", "word", number);
  store.Read("s", "big", number);
  store.Read("s", "missing", number);
  EXPECT_EQ(number, 5);
  store.Read("s", "int", number);
  EXPECT_EQ(number, 12);

  double real = 1;
  float single = 1;
  store.Read("s", "word", real);
  store.Read("s", "huge", single);
  EXPECT_EQ(real, 1);
  EXPECT_EQ(single, 1);
  store.Read("s", "real", real);
  store.Read("s", "real", single);
  EXPECT_EQ(real + single, 1);

  bool flag = false;
  store.Read("s", "yes", flag);
  EXPECT_TRUE(flag);
  store.Read("s", "word", flag);
  EXPECT_TRUE(flag);
  store.Read("s", "zero", flag);
  EXPECT_FALSE(flag);

  std::uint32_t colour = 7;
  store.ReadColour("s", "wide", colour);
  EXPECT_EQ(colour, 7U);
  store.ReadColour("s", "red", colour);
  EXPECT_EQ(colour, 255U);
  std::string text = "x";
  store.Read("s", "word", text);
  EXPECT_EQ(text, "hello");
}

TEST_F(Store, SavesOnlyChangesAndTriesAgainAfterAFailure) {
  auto store = Open();
  EXPECT_FALSE(store.Save());
  EXPECT_FALSE(files.Exists(kPath)) << "nothing to write";
  store.SaveSetting("a", "k", "1");
  EXPECT_FALSE(store.Save());
  store.SaveSetting("a", "k", "1");
  EXPECT_FALSE(store.IsChanged());

  store.SaveSetting("a", "k", "2");
  files.Fail(FileOperation::Replace, Error{28, "disk full"});
  EXPECT_EQ(store.Save()->Code, 28);
  EXPECT_EQ(Content(), "[a]\nk=1\n");
  files.ClearFailures();
  EXPECT_FALSE(store.Save());
  EXPECT_EQ(Content(), "[a]\nk=2\n");
}

TEST_F(Store, NeverOverwritesWhatItCouldNotRead) {
  files.Put(kPath, "[a]\nk=1\n");
  files.Fail(FileOperation::Read, Error{13, "permission denied"});
  SettingsStore store(files, kPath);
  EXPECT_EQ(store.Load()->Code, 13);
  store.SaveSetting("a", "k", "2");
  EXPECT_TRUE(store.Save());
  files.ClearFailures();
  EXPECT_EQ(Content(), "[a]\nk=1\n");
}

TEST_F(Store, ASecondProgramReadsButNeverWrites) {
  files.Put(kPath, "[a]\nk=1\n");
  auto firstLock = std::make_unique<FileInstanceLock>(files);
  FileInstanceLock secondLock(files);
  SettingsStore first(files, kPath, firstLock.get());
  SettingsStore second(files, kPath, &secondLock);
  EXPECT_FALSE(first.Load());
  EXPECT_TRUE(second.Load());
  EXPECT_EQ(second.GetSetting("a", "k", ""), "1");
  second.SaveSetting("a", "k", "mixed");
  EXPECT_TRUE(second.Save());
  EXPECT_EQ(Content(), "[a]\nk=1\n");

  firstLock.reset();
  EXPECT_FALSE(second.Load());
  second.SaveSetting("a", "k", "mine");
  EXPECT_FALSE(second.Save());
  EXPECT_EQ(Content(), "[a]\nk=mine\n");
}

}  // namespace
}  // namespace quorl
