// Proves that the registry's store survives its programs, loses nothing to several writers, and
// answers with error codes when its file cannot be used.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "platform/posix/atomic_file.h"
#include "platform/posix/system_errors.h"
#include "tests/platform/posix/processes.h"
#include "tests/platform/posix/registry_calls.h"
#include "tests/support/temporary_folder.h"

namespace quorvane {
namespace {

namespace error = system_error;
constexpr Registry::Handle kCurrentUser = -2147483647;

class StoredRegistry : public ::testing::Test {
 protected:
  [[nodiscard]] static bool Write(Registry& registry, const char* path, const char* name,
                                  std::int32_t number) {
    Registry::Handle key = 0;
    return registry.Create(kCurrentUser, path, 63, &key, nullptr) == 0 &&
           registry.Set(key, name, 4, &number, sizeof number) == 0 && registry.Close(key) == 0;
  }
  [[nodiscard]] static std::int32_t Read(Registry& registry, const char* path, const char* name) {
    Registry::Handle key = 0;
    std::int32_t number = -1;
    std::int32_t size = sizeof number;
    if (registry.Open(kCurrentUser, path, 131097, &key) != 0) return -2;
    if (registry.Query(key, name, nullptr, &number, &size) != 0) number = -3;
    return registry.Close(key) == 0 ? number : -4;
  }

  [[nodiscard]] static std::string BytesOf(const std::filesystem::path& file) {
    return ReadFile(file).value_or("(none)");
  }

  testing::TemporaryFolder folder_;
  std::filesystem::path file_ = folder_.Path(u"data") / "registry.txt";
  RegistryStore store_{file_};
};

TEST_F(StoredRegistry, SurvivesItsPrograms) {
  {
    Registry first(store_);
    EXPECT_TRUE(Write(first, "A\\B", "n", 7));
  }
  Registry second(store_);
  EXPECT_EQ(Read(second, "a\\b", "N"), 7);
}

TEST_F(StoredRegistry, KeepsHivesApart) {
  Registry registry(store_);
  EXPECT_TRUE(Write(registry, "A", "n", 7));
  Registry::Handle key = 0;
  EXPECT_EQ(registry.Open(kCurrentUser + 1, "A", 131097, &key), error::kFileNotFound);
}

TEST_F(StoredRegistry, LosesNothingToManyPrograms) {
  constexpr int kPrograms = 6;
  constexpr int kValues = 25;
  EXPECT_TRUE(testing::AllProcesses(kPrograms, [&](int program) {
    Registry registry(store_);
    for (int value = 0; value < kValues; ++value) {
      const std::string path = "Shared\\Key" + std::to_string(value % 5);
      const std::string name = "p" + std::to_string(program) + "v" + std::to_string(value);
      if (!Write(registry, path.c_str(), name.c_str(), value)) return false;
    }
    return true;
  }));
  Registry registry(store_);
  for (int program = 0; program < kPrograms; ++program) {
    for (int value = 0; value < kValues; ++value) {
      const std::string path = "Shared\\Key" + std::to_string(value % 5);
      const std::string name = "p" + std::to_string(program) + "v" + std::to_string(value);
      EXPECT_EQ(Read(registry, path.c_str(), name.c_str()), value);
    }
  }
}

// The first programs of a user make the file, its log and its tables in each other's way, and the
// last to leave takes the log away while others come.
TEST_F(StoredRegistry, MayBeMadeByManyProgramsAtOnce) {
  for (int round = 0; round < 20; ++round) {
    const auto file = folder_.Path(u"data") / ("registry" + std::to_string(round) + ".txt");
    EXPECT_TRUE(testing::AllProcesses(8,
                                      [&](int program) {
                                        const std::string name = "p" + std::to_string(program);
                                        for (int visit = 0; visit < 3; ++visit) {
                                          Registry registry{RegistryStore(file)};
                                          if (!Write(registry, "A", name.c_str(), visit))
                                            return false;
                                          if (Read(registry, "A", name.c_str()) != visit)
                                            return false;
                                        }
                                        return true;
                                      }))
        << "round " << round;
  }
}

TEST_F(StoredRegistry, ServesManyThreads) {
  Registry registry(store_);
  std::vector<std::thread> threads;
  std::vector<char> done(4, 0);
  for (std::size_t number = 0; number < done.size(); ++number) {
    threads.emplace_back([&, number] {
      const std::string name = "t" + std::to_string(number);
      bool all = true;
      for (std::int32_t value = 0; value < 50; ++value) {
        all = all && Write(registry, "T", name.c_str(), value) &&
              Read(registry, "T", name.c_str()) == value;
      }
      done[number] = all ? 1 : 0;
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(done, std::vector<char>(4, 1));
  EXPECT_EQ(registry.OpenHandles(), 0U);
}

TEST_F(StoredRegistry, CountsItsHandles) {
  Registry registry(store_);
  Registry::Handle key = 0;
  Registry::Handle same = 0;
  EXPECT_EQ(registry.Create(kCurrentUser, "A", 63, &key, nullptr), 0);
  EXPECT_EQ(registry.Open(key, "", 131097, &same), 0);
  EXPECT_NE(key, same);
  EXPECT_EQ(registry.OpenHandles(), 2U);
  EXPECT_EQ(registry.Close(key), 0);
  EXPECT_EQ(registry.Close(key), error::kInvalidHandle);
  EXPECT_EQ(registry.Close(same), 0);
  EXPECT_EQ(registry.Open(kCurrentUser, "", 131097, &key), 0);
  EXPECT_EQ(key, kCurrentUser) << "a hive is its own handle";
  EXPECT_EQ(registry.OpenHandles(), 0U);
}

TEST_F(StoredRegistry, KeepsValuesDirectlyUnderAHive) {
  {
    Registry first(store_);
    EXPECT_EQ(first.Set(kCurrentUser, "n", 1, "abc", 4), 0);
  }
  Registry registry(store_);
  char data[5] = "----";
  std::int32_t type = 0;
  std::int32_t size = 4;
  EXPECT_EQ(registry.Query(kCurrentUser, "n", &type, data, &size), 0);
  EXPECT_EQ(type, 1);
  EXPECT_STREQ(data, "abc");
  EXPECT_EQ(registry.Query(kCurrentUser + 1, "n", &type, data, &size), error::kFileNotFound);
}

TEST_F(StoredRegistry, SaysWhetherAKeyIsNew) {
  Registry registry(store_);
  Registry::Handle key = 0;
  std::int32_t disposition = 0;
  EXPECT_EQ(registry.Create(kCurrentUser, "A\\B", 63, &key, &disposition), 0);
  EXPECT_EQ(disposition, 1);
  EXPECT_EQ(registry.Create(kCurrentUser, "a", 63, &key, &disposition), 0);
  EXPECT_EQ(disposition, 2);
}

TEST_F(StoredRegistry, RefusesNamesAndDataThatNoKeyCanHave) {
  Registry registry(store_);
  Registry::Handle key = 0;
  const std::string longest(255, 'k');
  EXPECT_EQ(registry.Create(kCurrentUser, longest.c_str(), 63, &key, nullptr), 0);
  const std::string longer(256, 'k');
  EXPECT_EQ(registry.Create(kCurrentUser, longer.c_str(), 63, &key, nullptr),
            error::kInvalidParameter);
  EXPECT_EQ(registry.Set(key, "n", 3, nullptr, 1), error::kNoAccess);
  EXPECT_EQ(registry.Set(key, "n", 3, "x", -1), error::kNoAccess);
  EXPECT_EQ(registry.Set(key, "n", 1, nullptr, 0), 0);
  EXPECT_EQ(registry.Open(kCurrentUser, "A", 1, nullptr), error::kInvalidParameter);
}

TEST_F(StoredRegistry, NoticesThatAKeyWasTakenAway) {
  Registry registry(store_);
  Registry::Handle key = 0;
  ASSERT_EQ(registry.Create(kCurrentUser, "A", 63, &key, nullptr), 0);
  store_.Change([](RegistryTree& tree) {
    EXPECT_TRUE(tree.RemoveKey(u"HKEY_CURRENT_USER\\A"));
    EXPECT_FALSE(tree.RemoveKey(u"HKEY_CURRENT_USER\\A")) << "none is left";
  });
  EXPECT_EQ(registry.Set(key, "n", 3, "x", 1), error::kKeyDeleted);
}

TEST_F(StoredRegistry, FailsWithACodeWhereItsFileIsNoStore) {
  std::filesystem::create_directories(file_.parent_path());
  std::ofstream(file_) << std::string(5000, 'x');
  Registry::Handle key = 0;
  Registry spoiled(store_);
  EXPECT_EQ(spoiled.Create(kCurrentUser, "A", 63, &key, nullptr), error::kRegistryIoFailed);
  EXPECT_EQ(spoiled.Open(kCurrentUser, "A", 63, &key), error::kRegistryIoFailed);
  Registry nowhere{RegistryStore("/proc/none/registry.txt")};
  EXPECT_EQ(nowhere.Open(kCurrentUser, "A", 63, &key), error::kFileNotFound);
  EXPECT_EQ(nowhere.Create(kCurrentUser, "A", 63, &key, nullptr), error::kRegistryIoFailed);
}

TEST_F(StoredRegistry, LeavesAStoreOfALaterFormatAlone) {
  const std::string later = "quorvane registry 2\n[HKEY_CURRENT_USER\\A]\nend\n";
  std::filesystem::create_directories(file_.parent_path());
  std::ofstream(file_) << later;
  Registry::Handle key = 0;
  Registry registry(store_);
  EXPECT_EQ(registry.Open(kCurrentUser, "A", 63, &key), error::kRegistryIoFailed);
  EXPECT_EQ(registry.Create(kCurrentUser, "A", 63, &key, nullptr), error::kRegistryIoFailed);
  EXPECT_EQ(BytesOf(file_), later);
}

TEST(RegistryTree, FindsAndTakesAwayAKeyWithAllBelowIt) {
  RegistryTree tree;
  for (const auto* path : {u"HKEY_CURRENT_USER\\A\\B\\C", u"HKEY_CURRENT_USER\\AB"})
    tree.Make(path);
  const auto paths = [&](std::u16string_view from) {
    std::vector<std::u16string> found;
    for (const RegistryKey* key : tree.KeysFrom(from)) found.push_back(key->path);
    return found;
  };
  EXPECT_EQ(paths(u"hkey_current_user\\a"),
            (std::vector<std::u16string>{u"HKEY_CURRENT_USER\\A", u"HKEY_CURRENT_USER\\A\\B",
                                         u"HKEY_CURRENT_USER\\A\\B\\C"}));
  EXPECT_EQ(paths(u"").size(), 5U) << "and the hive";
  EXPECT_TRUE(tree.RemoveKey(u"HKEY_CURRENT_USER\\A"));
  EXPECT_EQ(paths(u""),
            (std::vector<std::u16string>{u"HKEY_CURRENT_USER", u"HKEY_CURRENT_USER\\AB"}));
}

TEST(RegistryTree, TakesAValueAwayAndSaysWhetherThereWasOne) {
  constexpr std::u16string_view kKey = u"HKEY_CURRENT_USER\\A";
  RegistryTree tree;
  tree.Set(kKey, u"n", 1, "x");
  tree.Set(kKey, u"m", 1, "x");
  EXPECT_FALSE(tree.RemoveValue(kKey, u"other"));
  EXPECT_FALSE(tree.RemoveValue(u"HKEY_CURRENT_USER\\B", u"n"));
  EXPECT_EQ(tree.Find(u"HKEY_CURRENT_USER\\B", u"n"), nullptr);
  EXPECT_EQ(RegistryTree().Find(kKey, u"n"), nullptr);
  EXPECT_TRUE(tree.RemoveValue(u"hkey_current_user\\a", u"N"));
  EXPECT_EQ(tree.Find(kKey, u"n"), nullptr);
  EXPECT_NE(tree.Find(kKey, u"m"), nullptr);
  EXPECT_FALSE(tree.RemoveValue(kKey, u"n"));
}

TEST(RegistryTree, IsWrittenForReaders) {
  RegistryTree tree;
  tree.Set(u"HKEY_CURRENT_USER\\M\u00FCll", u"\u20AC=[%\x7F", 1, std::string("caf\xE9 \0", 6));
  EXPECT_EQ(tree.Bytes(),
            "quorvane registry 1\n[HKEY_CURRENT_USER]\n[HKEY_CURRENT_USER\\M\xC3\xBCll]\n"
            "\xE2\x82\xAC%3D%5B%25%7F=1:caf%E9 %00\nend\n");
}

TEST_F(StoredRegistry, IsReadableForItsUserAlone) {
  Registry registry(store_);
  EXPECT_TRUE(Write(registry, "A", "n", 1));
  EXPECT_EQ(std::filesystem::status(file_).permissions(),
            static_cast<std::filesystem::perms>(0600));
  EXPECT_EQ(std::filesystem::status(file_.parent_path()).permissions(),
            static_cast<std::filesystem::perms>(0700));
}

}  // namespace
}  // namespace quorvane
