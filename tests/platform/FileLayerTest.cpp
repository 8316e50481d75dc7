// Saving and posted calls on files of memory, which stall, fill up, are killed and lose their power.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/files/GrowingFile.h"
#include "platform/files/PostedFiles.h"
#include "platform/virtual/VirtualEventQueue.h"
#include "platform/virtual/VirtualFileWorker.h"
#include "platform/virtual/VirtualFiles.h"

namespace quorl {
namespace {

using std::chrono::milliseconds;

constexpr char kPath[] = "plans/Europe.bpl";

std::string Content(const VirtualFiles& files, const std::string& path = kPath) {
  Failure failure;
  return files.Read(path, failure).value_or("(none)");
}

TEST(FileLayer, AReplacementKilledAtAnyStepOrCutOffFromPowerLeavesOneWholeFile) {
  int steps = 0;
  bool done = false;
  for (; !done; ++steps) {
    for (const bool cut : {false, true}) {
      SCOPED_TRACE(std::to_string(steps) + (cut ? ", power cut" : ", killed"));
      VirtualFiles files;
      files.Put(kPath, "old");
      files.KillAfter(steps);
      try {
        done = !files.Replace(kPath, "the new one");
      } catch (const Killed&) {
        done = false;
      }
      files.Revive();
      if (cut) files.CutPower();
      EXPECT_EQ(Content(files), done ? "the new one" : "old");
      RemoveLeftovers(files, kPath);
      EXPECT_EQ(files.List("plans", "").size(), 1u);
    }
  }
  EXPECT_EQ(steps, 5) << "make, write, sync, rename, and once without a kill";
}

TEST(FileLayer, ADiskThatFillsUpOrWritesShortKeepsTheOldFileAndNothingBeside) {
  VirtualFiles files;
  files.Put(kPath, "old");
  const auto expectRefused = [&files](const Failure& failure) {
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->Code, 28);
    EXPECT_EQ(failure->Text.find(kPath), 0u) << failure->Text;
    EXPECT_EQ(Content(files), "old");
    EXPECT_EQ(files.List("plans", ""), (std::vector<std::string>{"Europe.bpl"}));
  };
  files.SetSpace(10);
  expectRefused(files.Replace(kPath, "12345678"));
  EXPECT_FALSE(files.Replace(kPath, "old"));
  files.SetSpace(1000);
  files.WriteShort(4);
  expectRefused(files.Replace(kPath, "12345678"));
  EXPECT_FALSE(files.Copy(kPath, "plans/Copy.bpl"));
  EXPECT_EQ(Content(files, "plans/Copy.bpl"), "old");
}

TEST(FileLayer, FreeSpaceIsWhatCanStillBeWritten) {
  VirtualFiles files;
  files.Put(kPath, "12345");
  EXPECT_FALSE(files.FreeSpace(kPath));
  files.SetSpace(12);
  EXPECT_EQ(files.FreeSpace("plans"), 7);
  EXPECT_EQ(files.FreeSpace("plans/New.bpl"), 7);
  EXPECT_FALSE(files.FreeSpace("nowhere/New.bpl"));
  EXPECT_FALSE(files.Append("plans/New.bpl", "1234567"));
  EXPECT_EQ(files.FreeSpace(kPath), 0);
}

TEST(FileLayer, LeftoversAreNumbersBesideThatFileOnly) {
  VirtualFiles files;
  for (const char* name :
       {"a.ini", "a.ini.1.new", "a.ini.4711.new", "a.ini.x.new", "a.ini..new", "b.ini.1.new"})
    files.Put(std::string("etc/") + name, "");
  files.PutLink("link.ini", "etc/a.ini");
  RemoveLeftovers(files, "link.ini");
  EXPECT_EQ(files.List("etc", ""),
            (std::vector<std::string>{"a.ini", "a.ini..new", "a.ini.x.new", "b.ini.1.new"}));
}

class PostedFilesTest : public testing::Test {
 protected:
  // Notes a name when the call has succeeded, and its failure's code otherwise.
  FileDone Note(const std::string& name) {
    return [this, name](const Failure& failure) {
      told += (told.empty() ? "" : " ") + (failure ? std::to_string(failure->Code) : name);
    };
  }

  VirtualClock clock;
  VirtualEventQueue queue{clock};
  VirtualFiles files;
  VirtualFileWorker worker{queue};
  std::string told;
};

TEST_F(PostedFilesTest, CallsGoInTheirOrderInTheirTimeAndTellOnce) {
  worker.SetCallTime(milliseconds(40));
  PostedFiles posted(files, worker);
  std::unique_ptr<PostedFile> file;
  posted.Open("rec.tmp", OpenMode::Update, [&](OpenedFile opened) { file = std::move(opened.File); });
  queue.AdvanceBy(milliseconds(39));
  EXPECT_FALSE(file);
  queue.AdvanceBy(milliseconds(1));
  ASSERT_TRUE(file);
  file->Append("header", Note("header"));
  file->Append("samples", Note("samples"));
  file->WriteAt(0, "HEADER", Note("sizes"));
  file->Truncate(10, Note("cut"));
  file->Sync(Note("sync"));
  std::string read;
  file->ReadAt(4, 100, [&](const FileContent& content) { read = content.Bytes; });
  posted.Rename("rec.tmp", "rec.wav", Note("rename"));
  posted.Remove("none", Note("remove"));
  EXPECT_EQ(worker.Waiting(), 8);
  queue.AdvanceBy(milliseconds(80));
  EXPECT_EQ(told, "header samples");
  queue.AdvanceBy(milliseconds(1000));
  EXPECT_EQ(told, "header samples sizes cut sync rename 2");
  EXPECT_EQ(read, "ERsamp");
  EXPECT_EQ(Content(files, "rec.wav"), "HEADERsamp");
}

TEST_F(PostedFilesTest, AStallHoldsCallsBackAndWhoHasGoneIsToldNothing) {
  worker.Stall();
  {
    PostedFiles posted(files, worker);
    posted.Replace("plan", "kept", Note("replace"));
  }
  PostedFiles posted(files, worker);
  posted.Append("log", "line", Note("append"));
  queue.AdvanceBy(milliseconds(60000));
  EXPECT_EQ(told, "");
  EXPECT_FALSE(files.Exists("plan"));
  worker.Resume();
  queue.AdvanceBy(milliseconds(10));
  EXPECT_EQ(told, "append");
  EXPECT_EQ(Content(files, "plan"), "kept");
}

TEST_F(PostedFilesTest, AKillStopsTheLineInTheMiddleOfAWrite) {
  files.Put("rec.tmp", "");
  PostedFiles posted(files, worker);
  std::unique_ptr<PostedFile> file;
  posted.Open("rec.tmp", OpenMode::Update, [&](OpenedFile opened) { file = std::move(opened.File); });
  queue.AdvanceBy(milliseconds(5));
  files.KillAfter(1);
  file->Append("1111", Note("first"));
  file->Append("2222", Note("second"));
  file->Append("3333", Note("third"));
  EXPECT_THROW(queue.AdvanceBy(milliseconds(50)), Killed);
  EXPECT_EQ(Content(files, "rec.tmp"), "111122");
  EXPECT_EQ(told, "first");
}

TEST(VirtualFiles, ALockKeepsOthersOffUntilItsFileGoes) {
  VirtualFiles files;
  Failure failure;
  auto mine = files.Open("plan", OpenMode::Update, failure);
  const auto theirs = files.Open("plan", OpenMode::Read, failure);
  EXPECT_FALSE(mine->Lock());
  EXPECT_EQ(theirs->Lock()->Code, OpenFile::kLockedElsewhere);
  mine.reset();
  EXPECT_FALSE(theirs->Lock());
}

}  // namespace
}  // namespace quorl
