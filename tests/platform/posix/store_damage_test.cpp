// Proves that the stores survive programs that are killed while they write, and files that are
// damaged: what was acknowledged is there, nothing is half, and damage is told and never written
// over.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <random>
#include <thread>

#include "platform/posix/atomic_file.h"
#include "platform/posix/profile_store.h"
#include "platform/posix/system_errors.h"
#include "tests/platform/posix/registry_calls.h"
#include "tests/support/temporary_folder.h"

namespace quorvane {
namespace {

namespace fs = std::filesystem;
namespace error = system_error;

constexpr Registry::Handle kCurrentUser = -2147483647;

std::string BytesOf(const fs::path& file) { return ReadFile(file).value_or("(none)"); }

// Runs write(1), write(2) ... in a process that is killed after that time; the last acknowledged.
template <class Write>
std::int32_t KilledAfter(std::chrono::microseconds time, Write write) {
  int ends[2];
  if (::pipe(ends) != 0) return -1;
  const pid_t child = ::fork();
  if (child == 0) {
    for (std::int32_t number = 1; write(number); ++number) {
      if (::write(ends[1], &number, sizeof number) < 0) break;
    }
    ::_exit(1);
  }
  ::close(ends[1]);
  std::int32_t acknowledged = 0;
  // The time runs from the first write on, so that each run meets one.
  const bool started = ::read(ends[0], &acknowledged, sizeof acknowledged) > 0;
  std::this_thread::sleep_for(time);
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  while (::read(ends[0], &acknowledged, sizeof acknowledged) > 0) {
  }
  ::close(ends[0]);
  return started ? acknowledged : -1;
}

class StoreDamage : public ::testing::Test {
 protected:
  [[nodiscard]] std::chrono::microseconds SomeTime() {
    return std::chrono::microseconds(random_() % 8000);
  }

  testing::TemporaryFolder folder_;
  fs::path store_ = folder_.Path(u"registry.txt");
  fs::path profile_ = folder_.Path(u"a.ini");
  std::mt19937 random_{20261121};  // NOLINT(cert-msc51-cpp): the same runs every time
};

constexpr int kKills = 60;

TEST_F(StoreDamage, ARegistryKeepsWhatKilledProgramsWrote) {
  const RegistryStore store(store_);
  store.Change([](RegistryTree& tree) { tree.Set(u"HKEY_CURRENT_USER\\Kept", u"k", 1, "kept"); });
  for (int kill = 0; kill < kKills; ++kill) {
    const std::int32_t acknowledged = KilledAfter(SomeTime(), [&](std::int32_t number) {
      const std::string data = std::to_string(number);
      store.Change([&](RegistryTree& tree) { tree.Set(u"HKEY_CURRENT_USER\\A", u"n", 1, data); });
      return true;
    });
    ASSERT_GT(acknowledged, 0);
    const RegistryTree tree = store.Read();
    const StoredValue* const value = tree.Find(u"HKEY_CURRENT_USER\\A", u"n");
    ASSERT_NE(value, nullptr);
    // The write that was cut short may have been done, too.
    EXPECT_GE(std::stoi(value->data), acknowledged);
    EXPECT_LE(std::stoi(value->data), acknowledged + 1);
    ASSERT_NE(tree.Find(u"HKEY_CURRENT_USER\\Kept", u"k"), nullptr);
  }
  store.Change([](RegistryTree& tree) { tree.RemoveKey(u"HKEY_CURRENT_USER\\A"); });
  EXPECT_FALSE(fs::exists(store_.native() + ".new")) << "what the killed left is cleared away";
}

TEST_F(StoreDamage, AProfileKeepsWhatKilledProgramsWrote) {
  std::ofstream(profile_) << "[kept]\nk=kept\n";
  for (int kill = 0; kill < kKills; ++kill) {
    const std::int32_t acknowledged = KilledAfter(SomeTime(), [&](std::int32_t number) {
      return profile_store::Write(profile_, "s", "n", std::to_string(number).c_str());
    });
    ASSERT_GT(acknowledged, 0);
    char buffer[20];
    ASSERT_GT(profile_store::Read(profile_, "s", "n", "", buffer, sizeof buffer), 0);
    EXPECT_GE(std::stoi(buffer), acknowledged);
    EXPECT_LE(std::stoi(buffer), acknowledged + 1);
    EXPECT_EQ(BytesOf(profile_), std::string("[kept]\nk=kept\n[s]\nn=") + buffer + "\n");
  }
  EXPECT_TRUE(profile_store::Write(profile_, "s", "n", nullptr));
  EXPECT_FALSE(fs::exists(profile_.native() + ".new")) << "what the killed left is cleared away";
}

std::string Damaged(std::string bytes, std::mt19937& random) {
  const std::size_t at = random() % bytes.size();
  switch (random() % 4) {
    case 0:
      bytes[at] = static_cast<char>(bytes[at] ^ static_cast<char>(1U << random() % 8));
      return bytes;
    case 1:
      return bytes.substr(0, at);
    case 2:
      return bytes.replace(at, 1 + random() % 9, random() % 9, '\0');
    default:
      return bytes.insert(at, bytes.substr(random() % bytes.size(), 5));
  }
}

TEST_F(StoreDamage, ADamagedRegistryIsToldAndLeftAlone) {
  RegistryTree whole;
  for (int number = 0; number < 20; ++number) {
    const auto name = static_cast<char16_t>(u'a' + number);
    whole.Set(u"HKEY_CURRENT_USER\\K\u00E9y\\" + std::u16string(1, name), u"na=me", 3,
              std::string("%\0\xFF\n", 4));
  }
  ASSERT_EQ(RegistryTree::From(whole.Bytes()).value().Bytes(), whole.Bytes());
  int told = 0;
  for (int round = 0; round < 400; ++round) {
    const std::string damaged = Damaged(whole.Bytes(), random_);
    std::ofstream(store_, std::ios::binary | std::ios::trunc) << damaged;
    Registry registry{RegistryStore(store_)};
    Registry::Handle key = 0;
    const std::int32_t opened = registry.Create(kCurrentUser, "New", 63, &key, nullptr);
    if (opened == error::kRegistryIoFailed) {
      ++told;
      EXPECT_EQ(BytesOf(store_), damaged) << "round " << round;
      EXPECT_EQ(registry.Open(kCurrentUser, "K", 1, &key), error::kRegistryIoFailed);
    } else {
      // What still reads as a registry is one: nothing of it is lost.
      ASSERT_EQ(opened, 0);
      RegistryTree changed = RegistryTree::From(damaged).value();
      changed.Make(u"HKEY_CURRENT_USER\\New");
      EXPECT_EQ(BytesOf(store_), changed.Bytes()) << "round " << round;
    }
  }
  EXPECT_GT(told, 200);
}

// Taken for one, it would be written as a key that no reader takes.
TEST_F(StoreDamage, TheLastLineStandsAtTheEndAndNowhereElse) {
  const std::string lines = "quorvane registry 1\n[HKEY_CURRENT_USER\\A]\n";
  EXPECT_TRUE(RegistryTree::From(lines + "end\n").has_value());
  for (const char* other : {"", "end", "n=1:x\n", "end\nn=1:x\nend\n", "end\nend\n"})
    EXPECT_FALSE(RegistryTree::From(lines + other).has_value()) << other;
}

TEST_F(StoreDamage, AKeyOfBackslashesAloneIsDamage) {
  for (const char* lines : {"[\\]\n=1:x\n", "[\\]\n", "[]\n", "[%4]\n"})
    EXPECT_FALSE(
        RegistryTree::From(std::string("quorvane registry 1\n") + lines + "end\n").has_value())
        << lines;
}

TEST_F(StoreDamage, ADamagedProfileKeepsItsOtherLines) {
  const std::string whole = "[one]\r\na=\xC3\xA9\r\n; comment\r\n[two]\nb = 'x'\n";
  for (int round = 0; round < 400; ++round) {
    const std::string damaged = Damaged(whole, random_);
    std::ofstream(profile_, std::ios::binary | std::ios::trunc) << damaged;
    if (profile_store::Write(profile_, "three", "c", "1")) {
      EXPECT_TRUE(BytesOf(profile_).starts_with(damaged)) << "round " << round;
      char buffer[4];
      EXPECT_EQ(profile_store::Read(profile_, "three", "c", "", buffer, 4), 1);
    } else {
      EXPECT_EQ(BytesOf(profile_), damaged) << "round " << round;
    }
  }
}

}  // namespace
}  // namespace quorvane
