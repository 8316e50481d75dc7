#include "platform/linux/system/LinuxFiles.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <random>
#include <thread>

#include "platform/ScratchDirectory.h"
#include "platform/files/FileInstanceLock.h"
#include "platform/files/GrowingFile.h"
#include "platform/files/PostedFiles.h"
#include "platform/linux/system/ApplicationFolder.h"
#include "platform/linux/system/LinuxEventQueue.h"
#include "platform/linux/system/LinuxFileWorker.h"
#include "platform/linux/system/UserDirectories.h"

namespace quorl {
namespace {

class LinuxFilesTest : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return scratch_.Path(name); }
  std::string Content(const std::string& path) const {
    Failure failure;
    return files_.Read(path, failure).value_or("(none)");
  }
  mode_t Mode(const std::string& path) const {
    struct stat facts {};
    stat(path.c_str(), &facts);
    return facts.st_mode & 0777;
  }

  ScratchDirectory scratch_;
  LinuxFiles files_;
};

TEST_F(LinuxFilesTest, FreeSpaceIsThatOfTheDiskBehindAFileOrItsDirectory) {
  const auto free = files_.FreeSpace(scratch_.Path());
  ASSERT_TRUE(free);
  // Others write meanwhile.
  constexpr double kMegabyte = 1 << 20;
  EXPECT_NEAR(double(files_.FreeSpace(Path("not-yet.wav")).value_or(0)), double(*free), 64 * kMegabyte);
  EXPECT_FALSE(files_.FreeSpace(Path("no/such/file.wav")));
  EXPECT_TRUE(files_.FreeSpace("relative.wav"));
  EXPECT_EQ(files_.FreeSpace("/proc"), 0);
}

TEST_F(LinuxFilesTest, ReplaceKeepsPermissionsAndLinksAndLeavesNothingBeside) {
  const std::string path = Path("settings.ini");
  EXPECT_FALSE(files_.Replace(path, "old"));
  chmod(path.c_str(), 0640);
  ASSERT_EQ(symlink(path.c_str(), Path("link.ini").c_str()), 0);
  EXPECT_FALSE(files_.Replace(Path("link.ini"), "new"));
  EXPECT_EQ(Content(path), "new");
  EXPECT_EQ(Mode(path), 0640u);
  EXPECT_EQ(files_.List(scratch_.Path(), ""), (std::vector<std::string>{"link.ini", "settings.ini"}));
  EXPECT_FALSE(files_.Append(path, "er"));
  EXPECT_EQ(Content(Path("link.ini")), "newer");
  // Two who write the same log: neither takes the other's place.
  Failure failure;
  const auto one = files_.Open(path, OpenMode::Append, failure),
             other = files_.Open(path, OpenMode::Append, failure);
  ASSERT_FALSE(failure);
  EXPECT_FALSE(one->WriteAt(0, "+", 1));
  EXPECT_FALSE(other->Append("-", 1));
  EXPECT_EQ(Content(path), "newer+-");
}

TEST_F(LinuxFilesTest, FailuresNameThePathAndWhatToDo) {
  const std::string missing = Path("no/such/file");
  Failure failure;
  EXPECT_FALSE(files_.Read(missing, failure));
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->Code, ENOENT);
  EXPECT_EQ(failure->Text,
            "Can't read " + missing +
                ": No such file or directory. Check that the name is right and that its directory "
                "exists.");
  EXPECT_EQ(files_.Replace(missing, "x")->Code, ENOENT);
  EXPECT_EQ(files_.Append(missing, "x")->Code, ENOENT);
  EXPECT_FALSE(files_.Read(scratch_.Path(), failure));
  EXPECT_EQ(failure->Code, EISDIR);

  ASSERT_FALSE(files_.Replace(Path("file"), "x"));
  EXPECT_TRUE(files_.MakeDirectory(Path("file")));
  EXPECT_TRUE(files_.MakeDirectory(Path("file/below")));
  EXPECT_FALSE(files_.MakeDirectory(Path("a/b/c")));
  EXPECT_FALSE(files_.MakeDirectory(Path("a/b/c")));
  EXPECT_TRUE(files_.Replace(Path("a"), "x"));
  EXPECT_EQ(files_.List(scratch_.Path(), ""), std::vector<std::string>{"file"});
}

TEST_F(LinuxFilesTest, AWriteThatFailsHalfWayKeepsTheOldContent) {
  const std::string path = Path("settings.ini");
  ASSERT_FALSE(files_.Replace(path, "old"));
  const pid_t child = fork();
  if (child == 0) {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{1000, 1000};
    setrlimit(RLIMIT_FSIZE, &limit);
    const Failure failure = files_.Replace(path, std::string(5000, 'x'));
    _exit(failure && failure->Code == EFBIG ? 0 : 1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(Content(path), "old");
  EXPECT_EQ(files_.List(scratch_.Path(), ""), std::vector<std::string>{"settings.ini"});
}

TEST_F(LinuxFilesTest, AKilledSaveLeavesTheOldOrTheNewFileWhole) {
  const std::string path = Path("settings.ini");
  const std::string contents[] = {std::string(300000, 'a'), std::string(500000, 'b')};
  ASSERT_FALSE(files_.Replace(path, contents[0]));
  std::minstd_rand random(1);
  int seen[2] = {0, 0};
  for (int round = 0; round < 200; ++round) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
      for (int i = 0;; ++i) {
        if (files_.Replace(path, contents[i % 2])) _exit(1);
        if (i == 0 && write(ends[1], "", 1) != 1) _exit(1);
      }
    }
    // Counts from a first finished save, so that every kill falls into the loop.
    char started = 0;
    ASSERT_EQ(read(ends[0], &started, 1), 1);
    usleep(static_cast<useconds_t>(random() % 3000));
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    close(ends[0]);
    close(ends[1]);
    ASSERT_TRUE(WIFSIGNALED(status));
    const std::string content = Content(path);
    ASSERT_TRUE(content == contents[0] || content == contents[1]) << content.size() << " bytes";
    ++seen[content == contents[1]];
  }
  EXPECT_GT(seen[0], 0);
  EXPECT_GT(seen[1], 0);
  EXPECT_GT(files_.List(scratch_.Path(), "").size(), 1u);
  RemoveLeftovers(files_, path);
  EXPECT_EQ(files_.List(scratch_.Path(), ""), std::vector<std::string>{"settings.ini"});
}

TEST_F(LinuxFilesTest, AnOpenFileIsReadAndWrittenByPosition) {
  Failure failure;
  const auto file = files_.Open(Path("a"), OpenMode::Create, failure);
  ASSERT_TRUE(file) << failure->Text;
  EXPECT_FALSE(files_.Open(Path("a"), OpenMode::Create, failure));
  EXPECT_EQ(failure->Code, EEXIST);
  EXPECT_FALSE(file->Append("0123456789", 10));
  EXPECT_FALSE(file->WriteAt(2, "ab", 2));
  EXPECT_FALSE(file->Truncate(6));
  EXPECT_FALSE(file->Append("!", 1));
  EXPECT_FALSE(file->Sync());
  EXPECT_EQ(file->Size(), 7);
  char part[10] = {};
  EXPECT_EQ(file->ReadAt(3, part, 10, failure), 4);
  EXPECT_EQ(std::string(part), "b45!");
  EXPECT_EQ(Content(Path("a")), "01ab45!");

  EXPECT_FALSE(files_.Copy(Path("a"), Path("b")));
  EXPECT_FALSE(files_.Rename(Path("b"), Path("c")));
  EXPECT_FALSE(files_.Remove(Path("a")));
  EXPECT_EQ(files_.Remove(Path("a"))->Code, ENOENT);
  EXPECT_EQ(Content(Path("c")), "01ab45!");
}

TEST_F(LinuxFilesTest, WhatNeverEndsOrIsTooLongIsRefused) {
  Failure failure;
  EXPECT_FALSE(files_.Read("/dev/zero", failure));
  EXPECT_EQ(failure->Code, EFBIG);
  ASSERT_FALSE(files_.Replace(Path("long"), ""));
  ASSERT_EQ(truncate(Path("long").c_str(), Files::kMostWhole), 0);
  EXPECT_TRUE(files_.Read(Path("long"), failure));
  ASSERT_EQ(truncate(Path("long").c_str(), Files::kMostWhole + 1), 0);
  EXPECT_FALSE(files_.Read(Path("long"), failure));
  EXPECT_EQ(files_.Kind("/dev/zero"), FileKind::Other);
}

TEST_F(LinuxFilesTest, ALinkToNothingYetIsFollowedByWriteAndLock) {
  ASSERT_FALSE(files_.MakeDirectory(Path("real")));
  ASSERT_EQ(symlink("real/settings.ini", Path("link.ini").c_str()), 0);
  FileInstanceLock lock(files_), other(files_);
  EXPECT_FALSE(lock.Acquire(Path("link.ini")));
  EXPECT_TRUE(other.Acquire(Path("real/settings.ini")));
  EXPECT_FALSE(files_.Replace(Path("link.ini"), "new"));
  EXPECT_EQ(Content(Path("real/settings.ini")), "new");
  EXPECT_EQ(files_.List(Path("real"), ""), (std::vector<std::string>{"settings.ini", "settings.ini.lock"}));
  FileInstanceLock device(files_);
  EXPECT_FALSE(device.Acquire("/dev/full"));
  EXPECT_FALSE(files_.Exists("/dev/full.lock"));
}

TEST_F(LinuxFilesTest, WorkGoesInItsOrderBesideTheQueueAndIsFinishedAtTheEnd) {
  LinuxEventQueue queue;
  std::string told;
  const auto main = std::this_thread::get_id();
  {
    LinuxFileWorker worker(queue);
    PostedFiles posted(files_, worker);
    bool beside = false;
    worker.Run([&] { beside = std::this_thread::get_id() != main; },
               [&] { told += beside ? "beside " : "here "; });
    for (const char* part : {"a", "b", "c"}) {
      posted.Append(Path("log"), part, [&told, part, main](const Failure& failure) {
        told += failure || std::this_thread::get_id() != main ? "wrong" : part;
      });
    }
    worker.Finish();
    EXPECT_EQ(Content(Path("log")), "abc");
    EXPECT_EQ(told, "") << "told from the queue only";
    while (told.size() < 10) queue.Wait(std::chrono::milliseconds(100));
    EXPECT_EQ(told, "beside abc");
    posted.Append(Path("log"), "d", [&told](const Failure&) { told += "gone"; });
  }
  queue.Yield();
  EXPECT_EQ(Content(Path("log")), "abcd");
  EXPECT_EQ(told, "beside abc");
}

TEST_F(LinuxFilesTest, ListTakesTheSuffixInAnyCase) {
  for (const char* name : {"b.BPL", "a.bpl", "c.bpl.1.new", "d.ini"})
    ASSERT_FALSE(files_.Replace(Path(name), ""));
  ASSERT_FALSE(files_.MakeDirectory(Path("e.bpl")));
  EXPECT_EQ(files_.List(scratch_.Path(), ".bpl"), (std::vector<std::string>{"a.bpl", "b.BPL"}));
  EXPECT_TRUE(files_.List(Path("nowhere"), "").empty());
}

TEST_F(LinuxFilesTest, TheApplicationFolderIsFilledOnceAndNeverOverwritten) {
  const std::string installed = Path("installed"), usual = Path("data/quorlsdr");
  const std::vector<InstalledFolder> plans{{installed, ""}}, all{{installed, ""}, {Path("looks"), "themes"}};
  ASSERT_FALSE(files_.MakeDirectory(installed));
  ASSERT_FALSE(files_.MakeDirectory(Path("looks")));
  ASSERT_FALSE(files_.MakeDirectory(usual));
  ASSERT_FALSE(files_.Replace(installed + "/Europe.bpl", "installed"));
  ASSERT_FALSE(files_.Replace(installed + "/Asia.bpl", "installed"));
  ASSERT_FALSE(files_.Replace(Path("looks/Night.thm"), "installed"));
  ASSERT_FALSE(files_.Replace(usual + "/Europe.bpl", "mine"));
  Failure failure;
  EXPECT_EQ(PrepareApplicationFolder(files_, "", usual, plans, failure), usual);
  EXPECT_EQ(Content(usual + "/Europe.bpl"), "mine");
  EXPECT_EQ(Content(usual + "/Asia.bpl"), "installed");
  EXPECT_FALSE(files_.Exists(usual + "/themes"));
  PrepareApplicationFolder(files_, "", usual, all, failure);  // of a version that brings themes
  EXPECT_EQ(Content(usual + "/themes/Night.thm"), "installed");

  unlink((usual + "/Asia.bpl").c_str());
  PrepareApplicationFolder(files_, "", usual, all, failure);
  EXPECT_FALSE(files_.Exists(usual + "/Asia.bpl"));
  ASSERT_FALSE(files_.Replace(installed + "/Africa.bpl", "of a newer version"));
  PrepareApplicationFolder(files_, "", usual, all, failure);
  EXPECT_EQ(Content(usual + "/Africa.bpl"), "of a newer version");
  EXPECT_FALSE(files_.Exists(usual + "/Asia.bpl"));
  unlink((usual + "/Africa.bpl").c_str());
  ASSERT_FALSE(files_.Replace(installed + "/Amateur.bpl", "known"));
  ASSERT_FALSE(files_.Replace(usual + "/.filled", ""));  // of the first versions
  PrepareApplicationFolder(files_, "", usual, all, failure);
  EXPECT_FALSE(files_.Exists(usual + "/Amateur.bpl"));
  EXPECT_TRUE(files_.Exists(usual + "/Africa.bpl"));
  PrepareApplicationFolder(files_, "", usual, {{Path("moved away"), ""}}, failure);
  EXPECT_FALSE(failure);
  unlink((usual + "/Asia.bpl").c_str());

  ASSERT_FALSE(files_.MakeDirectory(Path("own")));
  EXPECT_EQ(PrepareApplicationFolder(files_, Path("own"), usual, all, failure), Path("own"));
  EXPECT_TRUE(files_.List(Path("own"), "").empty());
  PrepareApplicationFolder(files_, Path("fresh"), usual, all, failure);
  EXPECT_EQ(Content(Path("fresh/Asia.bpl")), "installed");
  EXPECT_FALSE(failure);

  EXPECT_EQ(PrepareApplicationFolder(files_, Path("own/Asia.bpl/x"), usual, {{Path("gone"), ""}}, failure),
            "");
  EXPECT_TRUE(failure && failure->Text.find(Path("gone")) != std::string::npos);
}

TEST(UserDirectoriesTest, FollowTheEnvironmentAndFallBackToTheHome) {
  const auto state = [](const char* xdg) {
    return FindUserDirectories([xdg](const char* name) -> const char* {
      if (std::string(name) == "HOME") return "/home/ann";
      return std::string(name) == "XDG_STATE_HOME" ? xdg : nullptr;
    });
  };
  EXPECT_EQ(state("/var/x").LogFile(false), "/var/x/quorlsdr/QUORLSDR.log");
  EXPECT_EQ(state("relative").State, "/home/ann/.local/state/quorlsdr");
  EXPECT_EQ(state(nullptr).Config, "/home/ann/.config/quorlsdr");
  EXPECT_EQ(state("").Data, "/home/ann/.local/share/quorlsdr");
}

TEST(InstanceLockTest, AnotherProcessHoldsItUntilItDies) {
  ScratchDirectory scratch;
  LinuxFiles files;
  const std::string settings = scratch.Path("quorlsdr/settings.ini");
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  const pid_t child = fork();
  if (child == 0) {
    FileInstanceLock lock(files);
    if (lock.Acquire(settings) || !lock.IsHeld() || write(ends[1], "", 1) != 1) _exit(1);
    for (;;) pause();
  }
  char held = 0;
  ASSERT_EQ(read(ends[0], &held, 1), 1);

  FileInstanceLock lock(files), other(files);
  const Failure failure = lock.Acquire(scratch.Path("quorlsdr/../quorlsdr/./settings.ini"));
  ASSERT_TRUE(failure);
  EXPECT_NE(failure->Text.find("in use by another running program"), std::string::npos);
  EXPECT_FALSE(lock.IsHeld());
  EXPECT_FALSE(other.Acquire(scratch.Path("demo.ini")));
  EXPECT_TRUE(other.IsHeld());

  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_FALSE(lock.Acquire(settings));
  EXPECT_TRUE(lock.IsHeld());
  close(ends[0]);
  close(ends[1]);
}

}  // namespace
}  // namespace quorl
