// Proves what the stores make of rights, links and other users: reading asks for the right to read
// and makes nothing, writing asks for the right to write, and nobody else can hold either up.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>

#include <csignal>
#include <fstream>
#include <iterator>

#include "platform/posix/atomic_file.h"
#include "platform/posix/profile_store.h"
#include "platform/posix/system_errors.h"
#include "tests/platform/posix/ordinary_user.h"
#include "tests/platform/posix/registry_calls.h"
#include "tests/support/temporary_folder.h"

namespace quorvane {
namespace {

namespace fs = std::filesystem;
namespace error = system_error;
using testing::AsOrdinaryUser;
using testing::GiveToOrdinaryUser;

constexpr Registry::Handle kCurrentUser = -2147483647;
constexpr const char* kStored =
    "quorvane registry 1\n[HKEY_CURRENT_USER\\A]\nn=4:%07%00%00%00\nend\n";

class StoreRights : public ::testing::Test {
 protected:
  StoreRights() {
    fs::create_directory(home_);
    EXPECT_TRUE(GiveToOrdinaryUser(home_, 0700));
    EXPECT_EQ(::chmod(home_.parent_path().c_str(), 0755), 0);
  }
  ~StoreRights() override { ::chmod(home_.c_str(), 0700); }

  void Put(const fs::path& file, const std::string& bytes, mode_t mode) {
    std::ofstream(file, std::ios::binary) << bytes;
    EXPECT_TRUE(GiveToOrdinaryUser(file, mode));
  }
  static std::string BytesOf(const fs::path& file) { return ReadFile(file).value_or("(none)"); }
  static std::int32_t Read(const fs::path& file, std::int32_t& number) {
    Registry registry{RegistryStore(file)};
    Registry::Handle key = 0;
    std::int32_t size = sizeof number;
    const std::int32_t opened = registry.Open(kCurrentUser, "A", 131097, &key);
    return opened != 0 ? opened : registry.Query(key, "n", nullptr, &number, &size);
  }
  static std::int32_t Write(const fs::path& file, std::int32_t number) {
    Registry registry{RegistryStore(file)};
    Registry::Handle key = 0;
    const std::int32_t opened = registry.Create(kCurrentUser, "A", 63, &key, nullptr);
    return opened != 0 ? opened : registry.Set(key, "n", 4, &number, sizeof number);
  }
  static std::string ReadProfile(const fs::path& file) {
    std::string buffer(100, '#');
    const std::int32_t count = profile_store::Read(file, "s", "k", "none", buffer.data(), 100);
    return buffer.substr(0, static_cast<std::size_t>(count));
  }
  [[nodiscard]] std::ptrdiff_t FilesAtHome() const {
    return std::distance(fs::directory_iterator(home_), {});
  }

  testing::TemporaryFolder folder_;
  fs::path home_ = folder_.Path(u"home");
  fs::path store_ = home_ / "registry.txt";
  fs::path profile_ = home_ / "a.ini";
};

TEST_F(StoreRights, ReadingAsksForNoRightToWrite) {
  Put(store_, kStored, 0400);
  Put(profile_, "[s]\nk=v\n", 0400);
  ASSERT_EQ(::chmod(home_.c_str(), 0500), 0);
  EXPECT_TRUE(AsOrdinaryUser([&] {
    std::int32_t number = 0;
    return Read(store_, number) == 0 && number == 7 && ReadProfile(profile_) == "v";
  }));
}

TEST_F(StoreRights, AnExistingKeyIsOpenedForWritingThoughOnlyTheStoreFails) {
  Put(store_, kStored, 0400);
  ASSERT_EQ(::chmod(home_.c_str(), 0500), 0);
  EXPECT_TRUE(AsOrdinaryUser([&] { return Write(store_, 8) == error::kRegistryIoFailed; }));
  EXPECT_EQ(BytesOf(store_), kStored);
}

TEST_F(StoreRights, ReadingMakesNothing) {
  std::int32_t number = 0;
  EXPECT_EQ(Read(home_ / "data" / "registry.txt", number), error::kFileNotFound);
  EXPECT_EQ(ReadProfile(profile_), "none");
  fs::create_symlink("nowhere", store_);
  EXPECT_EQ(Read(store_, number), error::kFileNotFound);
  EXPECT_EQ(FilesAtHome(), 1);
}

TEST_F(StoreRights, WhatCannotBeReadIsNotWhatIsNotThere) {
  Put(store_, kStored, 0000);
  EXPECT_TRUE(AsOrdinaryUser([&] {
    std::int32_t number = 0;
    return Read(store_, number) == error::kRegistryIoFailed;
  }));
  fs::remove(store_);
  fs::create_directory(store_);
  std::int32_t number = 0;
  EXPECT_EQ(Read(store_, number), error::kRegistryIoFailed);
}

TEST_F(StoreRights, LinkedFoldersAndLinkedStoresAreFollowed) {
  fs::create_directory(home_ / "real");
  fs::create_directory_symlink("real", home_ / "linked");
  EXPECT_EQ(Write(home_ / "linked" / "data" / "registry.txt", 7), 0);
  std::int32_t number = 0;
  EXPECT_EQ(Read(home_ / "real" / "data" / "registry.txt", number), 0);
  EXPECT_EQ(number, 7);
  fs::create_symlink("real/data/registry.txt", store_);
  EXPECT_EQ(Write(store_, 8), 0);
  EXPECT_TRUE(fs::is_symlink(store_));
  EXPECT_EQ(Read(home_ / "linked" / "data" / "registry.txt", number), 0);
  EXPECT_EQ(number, 8);
}

TEST_F(StoreRights, AWriteMakesTheTargetOfALink) {
  fs::create_symlink("target.ini", profile_);
  EXPECT_TRUE(profile_store::Write(profile_, "s", "k", "v"));
  EXPECT_TRUE(fs::is_symlink(profile_));
  EXPECT_EQ(BytesOf(home_ / "target.ini"), "[s]\nk=v\n");
  fs::create_symlink("circle.ini", home_ / "circle.ini");
  EXPECT_FALSE(profile_store::Write(home_ / "circle.ini", "s", "k", "v"));
  EXPECT_TRUE(fs::is_symlink(home_ / "circle.ini"));
}

TEST_F(StoreRights, AWriteAsksForTheRightToWriteTheFile) {
  Put(profile_, "[s]\nk=v\n", 0444);
  EXPECT_TRUE(AsOrdinaryUser([&] { return !profile_store::Write(profile_, "s", "k", "w"); }));
  EXPECT_EQ(BytesOf(profile_), "[s]\nk=v\n");
  EXPECT_EQ(FilesAtHome(), 1);
}

TEST_F(StoreRights, AnotherUsersFileStaysHis) {
  if (::geteuid() != 0) GTEST_SKIP() << "asks for two users";
  std::ofstream(profile_) << "[s]\nk=v\n";
  EXPECT_TRUE(AsOrdinaryUser([&] { return !profile_store::Write(profile_, "s", "k", "w"); }));
  EXPECT_TRUE(GiveToOrdinaryUser(profile_, 0640));
  EXPECT_TRUE(profile_store::Write(profile_, "s", "k", "w"));
  struct stat status {};
  ASSERT_EQ(::stat(profile_.c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, testing::OrdinaryUser());
  EXPECT_EQ(status.st_mode & 07777U, 0640U);
  EXPECT_EQ(BytesOf(profile_), "[s]\nk=w\n");
}

// Whoever may write another user's file makes it his own. The mark that lends the rights of its
// group stays where the group does.
TEST_F(StoreRights, AFileThatChangesHandsLendsNoRightsOfAnotherGroup) {
  if (::geteuid() != 0) GTEST_SKIP() << "asks for two users";
  for (const bool keeps_group : {false, true}) {
    fs::remove(profile_);
    std::ofstream(profile_) << "[s]\nk=v\n";
    ASSERT_EQ(::chown(profile_.c_str(), 0, keeps_group ? testing::OrdinaryUser() : 0), 0);
    ASSERT_EQ(::chmod(profile_.c_str(), 02666), 0);
    EXPECT_TRUE(AsOrdinaryUser([&] { return profile_store::Write(profile_, "s", "k", "w"); }));
    struct stat status {};
    ASSERT_EQ(::stat(profile_.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, testing::OrdinaryUser());
    EXPECT_EQ(status.st_mode & 07777U, keeps_group ? 02666U : 0666U);
    EXPECT_EQ(BytesOf(profile_), "[s]\nk=w\n");
  }
}

TEST_F(StoreRights, AFolderThatCannotBeListedServes) {
  Put(profile_, "[s]\nk=v\n", 0600);
  ASSERT_EQ(::chmod(home_.c_str(), 0300), 0);
  EXPECT_TRUE(AsOrdinaryUser([&] {
    return profile_store::Write(profile_, "s", "k", "w") && ReadProfile(profile_) == "w";
  }));
}

TEST_F(StoreRights, LocksOnTheFileAndItsFolderHoldNobodyUp) {
  Put(profile_, "[s]\nk=v\n", 0644);
  const int on_file = ::open(profile_.c_str(), O_RDONLY | O_CLOEXEC);
  const int on_folder = ::open(home_.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(::flock(on_file, LOCK_EX) + ::flock(on_folder, LOCK_EX), 0);
  EXPECT_TRUE(profile_store::Write(profile_, "s", "k", "w"));
  EXPECT_EQ(BytesOf(profile_), "[s]\nk=w\n");
  ::close(on_file);
  ::close(on_folder);
}

TEST_F(StoreRights, AStoreThatWasDeletedUnderItsProgramIsMadeAgain) {
  Registry registry{RegistryStore(store_)};
  Registry::Handle key = 0;
  std::int32_t number = 7;
  ASSERT_EQ(registry.Create(kCurrentUser, "A", 63, &key, nullptr), 0);
  fs::remove(store_);
  EXPECT_EQ(registry.Set(key, "n", 4, &number, sizeof number), error::kKeyDeleted);
  ASSERT_EQ(registry.Create(kCurrentUser, "A", 63, &key, nullptr), 0);
  EXPECT_EQ(registry.Set(key, "n", 4, &number, sizeof number), 0);
  number = 0;
  EXPECT_EQ(Read(store_, number), 0);
  EXPECT_EQ(number, 7);
}

TEST_F(StoreRights, AFileThatMayNotGrowKeepsWhatItHas) {
  Put(store_, kStored, 0600);
  EXPECT_TRUE(testing::AllProcesses(1, [&](int /*number*/) {
    const rlimit limit{100, 100};
    std::signal(SIGXFSZ, SIG_IGN);
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return false;
    Registry registry{RegistryStore(store_)};
    Registry::Handle key = 0;
    const std::string data(200, 'x');
    std::int32_t number = 0;
    return registry.Open(kCurrentUser, "A", 63, &key) == 0 &&
           registry.Set(key, "long", 3, data.data(), 200) == error::kRegistryIoFailed &&
           Read(store_, number) == 0 && number == 7;
  }));
  EXPECT_EQ(BytesOf(store_), kStored);
  EXPECT_EQ(FilesAtHome(), 1);
}

// As the commonest of all forms makes it: the program's folder, a backslash, a name.
TEST_F(StoreRights, ABackslashSeparatesInTheNameOfAProfile) {
  const fs::path named = profile_store::NamedProfile((home_.native() + "\\a.ini").c_str());
  EXPECT_EQ(named, profile_);
  EXPECT_TRUE(profile_store::Write(named, "s", "k", "v"));
  EXPECT_EQ(BytesOf(profile_), "[s]\nk=v\n");
}

TEST_F(StoreRights, NamesThatNoFileCanHaveAreRefused) {
  for (const std::string& name : {std::string(300, 'x'), "/" + std::string(5000, 'x')}) {
    EXPECT_FALSE(profile_store::Write(home_ / name, "s", "k", "v"));
    EXPECT_EQ(ReadProfile(home_ / name), "none");
  }
  ASSERT_EQ(::chmod(home_.c_str(), 0000), 0);
  EXPECT_TRUE(AsOrdinaryUser([&] {
    return !profile_store::Write(profile_, "s", "k", "v") && ReadProfile(profile_) == "none";
  }));
}

TEST_F(StoreRights, DamagedTextIsNotWrittenOver) {
  const std::string odd("\xFF\xFE[\0s\0]\0\n\0x", 11);
  Put(profile_, odd, 0600);
  EXPECT_FALSE(profile_store::Write(profile_, "s", "k", "v"));
  EXPECT_EQ(BytesOf(profile_), odd);
}

}  // namespace
}  // namespace quorvane
