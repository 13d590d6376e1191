// Proves that profile files are replaced as a whole, keep their permissions and links, and lose
// nothing to several writers.

#include "platform/posix/profile_store.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "platform/posix/account.h"
#include "platform/posix/atomic_file.h"
#include "tests/platform/posix/processes.h"
#include "tests/support/temporary_folder.h"

namespace quorvane {
namespace {

namespace fs = std::filesystem;

class ProfileStore : public ::testing::Test {
 protected:
  void SetUp() override { ::setenv("XDG_CONFIG_HOME", folder_.Path(u"config").c_str(), 1); }
  void Put(const std::string& bytes) { std::ofstream(file_, std::ios::binary) << bytes; }
  [[nodiscard]] bool Write(const char* key, const char* value) const {
    return profile_store::Write(file_, "s", key, value);
  }
  [[nodiscard]] static std::string BytesOf(const fs::path& file) {
    return ReadFile(file).value_or("(none)");
  }
  [[nodiscard]] std::size_t FilesInFolder() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(file_.parent_path()), {}));
  }

  testing::TemporaryFolder folder_;
  fs::path file_ = folder_.Path(u"a.ini");
};

TEST_F(ProfileStore, MakesAFileAndLeavesNoOther) {
  EXPECT_TRUE(Write("k", "v"));
  EXPECT_EQ(BytesOf(file_), "[s]\nk=v\n");
  EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(ProfileStore, MakesAFileForWhomTheUserMakesFilesFor) {
  const mode_t before = ::umask(027);
  EXPECT_TRUE(Write("k", "v"));
  ::umask(before);
  EXPECT_EQ(fs::status(file_).permissions(), static_cast<fs::perms>(0640));
}

TEST_F(ProfileStore, KeepsThePermissionsOfAFile) {
  Put("[s]\n");
  ASSERT_EQ(::chmod(file_.c_str(), 0640), 0);
  EXPECT_TRUE(Write("k", "v"));
  EXPECT_EQ(fs::status(file_).permissions(), static_cast<fs::perms>(0640));
}

// Whoever could open it before its permissions are those of the file could read on later.
TEST_F(ProfileStore, HidesWhatIsToTakeTheFilesPlaceUntilThen) {
  Put("[s]\n");
  ASSERT_EQ(::chmod(file_.c_str(), 0644), 0);
  const auto permissions = [&] { return fs::status(file_.native() + ".new").permissions(); };
  ChangeFile(file_, 0666, [&](const std::optional<std::string>& before) {
    EXPECT_EQ(permissions(), static_cast<fs::perms>(0600));
    return before.value_or("") + "k=v\n";
  });
  EXPECT_EQ(BytesOf(file_), "[s]\nk=v\n");
}

TEST_F(ProfileStore, WritesThroughALink) {
  const fs::path target = folder_.Path(u"target.ini");
  std::ofstream(target) << "[s]\n";
  fs::create_symlink("target.ini", file_);
  EXPECT_TRUE(Write("k", "v"));
  EXPECT_TRUE(fs::is_symlink(file_));
  EXPECT_EQ(BytesOf(target), "[s]\nk=v\n");
}

TEST_F(ProfileStore, WritesThrough39LinksAndNoMore) {
  const auto link = [&](int number) { return folder_.Path(u"link") += std::to_string(number); };
  fs::create_symlink(file_.filename(), link(1));
  for (int number = 2; number <= 40; ++number)
    fs::create_symlink(link(number - 1).filename(), link(number));
  EXPECT_FALSE(profile_store::Write(link(40), "s", "k", "v"));
  EXPECT_FALSE(fs::exists(file_));
  EXPECT_TRUE(profile_store::Write(link(39), "s", "k", "v"));
  EXPECT_EQ(BytesOf(file_), "[s]\nk=v\n");
}

TEST_F(ProfileStore, LeavesAnUnchangedFileAlone) {
  Put("[s]\nk=v\n");
  const auto before = fs::last_write_time(file_);
  EXPECT_TRUE(Write("k", "v"));
  EXPECT_TRUE(Write("none", nullptr));
  EXPECT_EQ(fs::last_write_time(file_), before);
}

TEST_F(ProfileStore, RefusesWhatIsNoFile) {
  fs::create_directory(file_);
  EXPECT_FALSE(Write("k", "v"));
  EXPECT_TRUE(fs::is_directory(file_));
  fs::remove(file_);
  ASSERT_EQ(::mkfifo(file_.c_str(), 0600), 0);
  EXPECT_FALSE(Write("k", "v"));
  char buffer[4] = "###";
  EXPECT_EQ(profile_store::Read(file_, "s", "k", "d", buffer, 4), 1);
  EXPECT_STREQ(buffer, "d");
}

TEST_F(ProfileStore, RefusesAMissingFolder) {
  file_ = folder_.Path(u"none") / "a.ini";
  EXPECT_FALSE(Write("k", "v"));
  EXPECT_FALSE(fs::exists(file_.parent_path()));
}

TEST_F(ProfileStore, LosesNothingToManyWriters) {
  constexpr int kWriters = 6;
  constexpr int kKeys = 15;
  EXPECT_TRUE(testing::AllProcesses(kWriters, [&](int writer) {
    for (int key = 0; key < kKeys; ++key) {
      const std::string name = "w" + std::to_string(writer) + "k" + std::to_string(key);
      if (!Write(name.c_str(), "v")) return false;
    }
    return true;
  }));
  const std::string bytes = BytesOf(file_);
  EXPECT_EQ(std::ranges::count(bytes, '\n'), 1 + kWriters * kKeys);
  EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(ProfileStore, LosesNothingToManyThreads) {
  constexpr int kKeys = 25;
  std::vector<std::thread> threads;
  for (int number = 0; number < 4; ++number) {
    threads.emplace_back([this, number] {
      for (int key = 0; key < kKeys; ++key) {
        const std::string name = "t" + std::to_string(number) + "k" + std::to_string(key);
        EXPECT_TRUE(Write(name.c_str(), "v"));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  const std::string bytes = BytesOf(file_);
  EXPECT_EQ(std::ranges::count(bytes, '\n'), 1 + 4 * kKeys);
  EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(ProfileStore, LosesNothingToWritersThroughALinkAndAnotherPath) {
  constexpr int kKeys = 20;
  const fs::path link = folder_.Path(u"link.ini");
  const fs::path other_path = folder_.Path(u"other folder") / "to a.ini";
  Put("[s]\n");
  fs::create_symlink("a.ini", link);
  fs::create_directory(other_path.parent_path());
  fs::create_symlink("../a.ini", other_path);
  EXPECT_TRUE(testing::AllProcesses(3, [&](int number) {
    const fs::path names[] = {file_, link, other_path};
    for (int key = 0; key < kKeys; ++key) {
      const std::string name = "w" + std::to_string(number) + "k" + std::to_string(key);
      if (!profile_store::Write(names[number], "s", name.c_str(), "v")) return false;
    }
    return true;
  }));
  const std::string bytes = BytesOf(file_);
  EXPECT_EQ(std::ranges::count(bytes, '\n'), 1 + 3 * kKeys);
}

// The first programs of a user make the folder of the settings in each other's way.
TEST_F(ProfileStore, MayBeMadeByManyProgramsAtOnce) {
  for (int round = 0; round < 20; ++round) {
    const fs::path config = folder_.Path(u"config") / std::to_string(round);
    ::setenv("XDG_CONFIG_HOME", config.c_str(), 1);
    EXPECT_TRUE(testing::AllProcesses(
        8,
        [](int program) {
          const std::string name = "p" + std::to_string(program);
          return profile_store::Write(profile_store::NamedProfile("x.ini"), "s", name.c_str(), "v");
        }))
        << "round " << round;
    EXPECT_EQ(std::ranges::count(BytesOf(config / "quorvane" / "x.ini"), '\n'), 9) << round;
  }
}

TEST_F(ProfileStore, ClearsAwayWhatABrokenProgramLeft) {
  EXPECT_TRUE(Write("k", "1"));
  std::ofstream(file_.native() + ".new") << "half";
  EXPECT_TRUE(Write("k", "2"));
  EXPECT_EQ(BytesOf(file_), "[s]\nk=2\n");
  EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(ProfileStore, ShowsReadersWholeFilesOnly) {
  const std::string long_value(5000, 'v');
  EXPECT_TRUE(Write("k", long_value.c_str()));
  EXPECT_TRUE(testing::AllProcesses(3, [&](int number) {
    for (int round = 0; round < 60; ++round) {
      if (number == 0 && !Write("other", std::to_string(round).c_str())) return false;
      std::string buffer(6000, '#');
      if (number != 0 && profile_store::Read(file_, "s", "k", "", buffer.data(), 6000) != 5000) {
        return false;
      }
    }
    return true;
  }));
}

TEST_F(ProfileStore, CutsListsWithTwoZeros) {
  Put("[one]\n[two]\n[three]\n");
  char buffer[8];
  std::fill(std::begin(buffer), std::end(buffer), '#');
  EXPECT_EQ(profile_store::Read(file_, nullptr, nullptr, "", buffer, 8), 6);
  EXPECT_EQ(std::string(buffer, 8), std::string("one\0tw\0\0", 8));
  EXPECT_EQ(profile_store::Read(file_, nullptr, nullptr, "", buffer, 1), 0);
  EXPECT_EQ(profile_store::Read(file_, nullptr, nullptr, "", nullptr, 8), 0);
  EXPECT_EQ(profile_store::Read(file_, nullptr, nullptr, "", buffer, 0), 0);
}

TEST_F(ProfileStore, LaysNamesWithoutAFolderInTheSettings) {
  EXPECT_EQ(profile_store::NamedProfile("x.ini"), folder_.Path(u"config") / "quorvane" / "x.ini");
  EXPECT_EQ(profile_store::NamedProfile("./x.ini"), "./x.ini");
  EXPECT_EQ(profile_store::NamedProfile("/x.ini"), "/x.ini");
  EXPECT_EQ(profile_store::NamedProfile(nullptr),
            folder_.Path(u"config") / "quorvane" / "profile.ini");
  EXPECT_EQ(profile_store::NamedProfile("caf\xE9.ini").filename(), "caf\xC3\xA9.ini");
  EXPECT_TRUE(profile_store::Write(profile_store::NamedProfile("x.ini"), "s", "k", "v"));
  EXPECT_EQ(BytesOf(folder_.Path(u"config") / "quorvane" / "x.ini"), "[s]\nk=v\n");
}

TEST(DesktopPlaces, FollowTheEnvironmentOnlyByAbsolutePaths) {
  ::setenv("HOME", "/home/somebody", 1);
  ::setenv("XDG_DATA_HOME", "/data", 1);
  EXPECT_EQ(DataFolder(), "/data/quorvane");
  ::setenv("XDG_DATA_HOME", "data", 1);
  EXPECT_EQ(DataFolder(), "/home/somebody/.local/share/quorvane");
  ::unsetenv("XDG_CONFIG_HOME");
  EXPECT_EQ(ConfigFolder(), "/home/somebody/.config/quorvane");
  const auto user = CurrentUser();
  ASSERT_TRUE(user.has_value());
  const fs::path by_the_database = fs::path(user->home) / ".config" / "quorvane";
  ::unsetenv("HOME");
  EXPECT_EQ(ConfigFolder(), by_the_database);
  for (const char* const none : {"", "somewhere"}) {
    ::setenv("HOME", none, 1);
    EXPECT_EQ(ConfigFolder(), by_the_database);
  }
}

}  // namespace
}  // namespace quorvane
