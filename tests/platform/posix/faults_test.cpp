// Proves what the stand-ins make of a system whose calls fail: every call in turn, once and for
// good, by every usual code. No exception leaves them but the run-time errors of the files; a file
// is as it was or as it should be; nothing stays open or lies about.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/magic.h>
#include <net/if_arp.h>
#include <sys/file.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "platform/files.h"
#include "platform/iphlpapi.h"
#include "platform/posix/account.h"
#include "platform/posix/adapters.h"
#include "platform/posix/atomic_file.h"
#include "platform/posix/profile_store.h"
#include "platform/posix/system_errors.h"
#include "platform/system_code_page.h"
#include "runtime/runtime_error.h"
#include "tests/platform/posix/ordinary_user.h"
#include "tests/platform/posix/processes.h"
#include "tests/platform/posix/registry_calls.h"
#include "tests/platform/posix/system_faults.h"
#include "tests/support/raises.h"
#include "tests/support/temporary_folder.h"

namespace quorvane {
namespace {

namespace fs = std::filesystem;
namespace error = system_error;
using testing::FaultPlan;
using testing::other_system;
using testing::SystemFaults;

constexpr Registry::Handle kCurrentUser = -2147483647;
constexpr int kCodes[] = {EIO,    ENOSPC, EACCES, EROFS,  EMFILE,
                          ENOENT, ESTALE, EAGAIN, ENOLCK, EINTR};

std::string BytesOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::ptrdiff_t OpenDescriptors() {
  return std::distance(fs::directory_iterator("/proc/self/fd"), {});
}

class SystemFault : public ::testing::Test {
 protected:
  ~SystemFault() override { other_system = {}; }

  /// Each call of `body` fails in turn; `prepare` goes before each run, `check` after it with what
  /// the body gave and the code.
  template <class Prepare, class Body, class Check>
  void FailEachCall(Prepare prepare, Body body, Check check) {
    other_system.skips_pauses = true;
    for (const auto lasts : {FaultPlan::Lasts::kOnce, FaultPlan::Lasts::kForGood}) {
      for (const int code : kCodes) {
        // Nobody is interrupted for ever.
        if (code == EINTR && lasts == FaultPlan::Lasts::kForGood) continue;
        for (int call = 1;; ++call) {
          ASSERT_LT(call, 200);
          prepare();
          const std::ptrdiff_t before = OpenDescriptors();
          bool done = false;
          bool struck = false;
          {
            const SystemFaults faults(call, lasts, code);
            done = body();
            struck = faults.HasStruck();
          }
          SCOPED_TRACE("call " + std::to_string(call) + ", code " + std::to_string(code));
          check(done, struck);
          // A lock that is refused, and a file that is gone, are taken for another program's doing.
          EXPECT_TRUE(code == EAGAIN || code == ENOENT || !LeavesSomethingBeside());
          EXPECT_EQ(OpenDescriptors(), before);
          if (!struck) break;
        }
      }
    }
  }
  [[nodiscard]] bool LeavesSomethingBeside() const {
    return fs::exists(profile_.native() + ".new") || fs::exists(store_.native() + ".new");
  }
  void PutProfile() { std::ofstream(profile_, std::ios::trunc) << "[s]\nk=old\n"; }

  testing::TemporaryFolder folder_;
  fs::path store_ = folder_.Path(u"registry.txt");
  fs::path profile_ = folder_.Path(u"a.ini");
};

TEST_F(SystemFault, AProfileIsWrittenOrAsItWas) {
  FailEachCall([&] { PutProfile(); },
               [&] { return profile_store::Write(profile_, "s", "k", "new"); },
               [&](bool done, bool struck) {
                 EXPECT_EQ(BytesOf(profile_), done ? "[s]\nk=new\n" : "[s]\nk=old\n");
                 EXPECT_TRUE(done || struck);
               });
}

TEST_F(SystemFault, ANewProfileIsWrittenOrNotThere) {
  FailEachCall([&] { fs::remove(profile_); },
               [&] { return profile_store::Write(profile_, "s", "k", "new"); },
               [&](bool done, bool struck) {
                 EXPECT_EQ(fs::exists(profile_), done);
                 EXPECT_TRUE(done || struck);
               });
}

TEST_F(SystemFault, AProfileThatCannotBeReadGivesTheDefault) {
  std::string value;
  FailEachCall([&] { PutProfile(); },
               [&] {
                 char buffer[20];
                 const std::int32_t count =
                     profile_store::Read(profile_, "s", "k", "default", buffer, sizeof buffer);
                 value = buffer;
                 return count > 0;
               },
               [&](bool /*done*/, bool struck) {
                 EXPECT_TRUE(value == "old" || (struck && value == "default")) << value;
               });
}

TEST_F(SystemFault, ARegistryValueIsWrittenOrAsItWas) {
  RegistryTree before;
  before.Set(u"HKEY_CURRENT_USER\\A", u"n", 1, "old");
  RegistryTree after = before;
  after.Set(u"HKEY_CURRENT_USER\\A\\B", u"n", 1, std::string("new", 4));
  RegistryTree between = before;
  between.Make(u"HKEY_CURRENT_USER\\A\\B");
  std::int32_t result = 0;
  FailEachCall([&] { std::ofstream(store_, std::ios::trunc) << before.Bytes(); },
               [&] {
                 Registry registry{RegistryStore(store_)};
                 Registry::Handle key = 0;
                 const std::int32_t made = registry.Create(kCurrentUser, "A\\B", 63, &key, nullptr);
                 result = made != 0 ? made : registry.Set(key, "n", 1, "new", 3);
                 return result == 0;
               },
               [&](bool done, bool struck) {
                 const std::string bytes = BytesOf(store_);
                 EXPECT_TRUE(done || result == error::kRegistryIoFailed) << result;
                 EXPECT_TRUE(done ? bytes == after.Bytes()
                                  : bytes == before.Bytes() || bytes == between.Bytes())
                     << bytes;
                 EXPECT_TRUE(done || struck);
               });
}

// The code that says "not there" for a file that is there cannot be told from the truth.
TEST_F(SystemFault, ARegistryThatCannotBeReadIsNotEmpty) {
  RegistryTree tree;
  tree.Set(u"HKEY_CURRENT_USER\\A", u"n", 1, "old");
  std::int32_t result = 0;
  FailEachCall([&] { std::ofstream(store_, std::ios::trunc) << tree.Bytes(); },
               [&] {
                 Registry registry{RegistryStore(store_)};
                 Registry::Handle key = 0;
                 result = registry.Open(kCurrentUser, "A", 131097, &key);
                 return result != error::kFileNotFound || errno == ENOENT;
               },
               [&](bool done, bool struck) {
                 EXPECT_TRUE(done);
                 EXPECT_TRUE(struck || result == 0);
               });
}

TEST_F(SystemFault, FilesRaiseRunTimeErrorsOnly) {
  const Text name = folder_.WriteFile(u"a.bin", std::vector<std::uint8_t>(100, 7));
  FailEachCall([] {},
               [&] {
                 ByteArray buffer(0, 99);
                 const std::int32_t number = testing::ErrorNumberOf([&] {
                   static_cast<void>(files().ListName(name));
                   files().OpenForReading(name, 9);
                   static_cast<void>(files().Length(9));
                   files().Read(9, buffer);
                 });
                 files().Close(9);
                 return number == 0;
               },
               [&](bool done, bool struck) { EXPECT_TRUE(done || struck); });
}

TEST_F(SystemFault, AWriterThatNeverEndsIsGivenUp) {
  PutProfile();
  const fs::path next = profile_.native() + ".new";
  const int holder = ::open(next.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  ASSERT_EQ(::flock(holder, LOCK_EX), 0);
  other_system.skips_pauses = true;
  EXPECT_FALSE(profile_store::Write(profile_, "s", "k", "new"));
  EXPECT_EQ(BytesOf(profile_), "[s]\nk=old\n");
  EXPECT_TRUE(fs::exists(next)) << "it is the other's";
  ::close(holder);
  EXPECT_TRUE(profile_store::Write(profile_, "s", "k", "new"));
}

// As file systems over a network have it: a lease is refused though nobody writes.
TEST_F(SystemFault, ARefusedLeaseTellsOfAWriterOnlyWhereItMust) {
  const Text name = folder_.WriteFile(u"a.bin", std::vector<std::uint8_t>(100, 7));
  const auto open = [&] {
    const std::int32_t number = testing::ErrorNumberOf([&] { files().OpenForReading(name, 9); });
    files().Close(9);
    return number;
  };
  other_system.refuses_leases = true;
  other_system.file_system = EXT4_SUPER_MAGIC;
  EXPECT_EQ(open(), 70);
  for (const long network : {long{NFS_SUPER_MAGIC}, long{CIFS_SUPER_MAGIC}, 0x12345678L}) {
    other_system.file_system = network;
    EXPECT_EQ(open(), 0);
  }
}

TEST_F(SystemFault, AnAccountMayHaveTheSignOfADomainInItsName) {
  other_system.joined_user = "EXAMPLE\\anna";
  const auto found = account::Find("EXAMPLE\\anna");
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->domain, "Unix User");
  std::string sid = found->sid;
  sid.resize(68);
  EXPECT_EQ(account::SidText(reinterpret_cast<const unsigned char*>(sid.data())), "S-1-22-1-4711");
  EXPECT_FALSE(account::Find("EXAMPLE\\bert").has_value());
}

// The longest that the kernel has, and one that it cannot have.
TEST_F(SystemFault, AHostsNameOf64CharactersIsKnownWhole) {
  std::string name(64, 'h');
  other_system.host_name = name.c_str();
  EXPECT_EQ(HostName(), name);
  EXPECT_TRUE(account::IsThisMachine(name));
  name += 'h';
  other_system.host_name = name.c_str();
  EXPECT_EQ(HostName(), "");
}

// In a program of its own, whose code page was not asked for yet.
TEST_F(SystemFault, ASystemWithoutAConverterIsAnErrorOfTheCall) {
  constexpr const char* kOwnProgram = "QUORVANE_TEST_WITHOUT_CONVERTERS";
  if (std::getenv(kOwnProgram) == nullptr) {
    const std::string file = fs::read_symlink("/proc/self/exe").native();
    EXPECT_TRUE(testing::AllProcesses(1, [&](int /*number*/) {
      ::setenv(kOwnProgram, "1", 1);
      return ::execl(file.c_str(), file.c_str(), "--gtest_brief=1",
                     "--gtest_filter=*WithoutAConverter*", nullptr) == 0;
    }));
    return;
  }
  other_system.lacks_converters = true;
  for (int again = 0; again < 2; ++again) {
    EXPECT_EQ(testing::ErrorNumberOf([] { static_cast<void>(systemCodePage().ToBytes(u"a")); }),
              48);
  }
}

TEST_F(SystemFault, AUserWithoutAnEntryHasNoName) {
  other_system.lacks_user = true;
  Address32 text = kNoAddress;
  EXPECT_EQ(advapi32().ConvertSidToStringSidA("", &text), 0) << "and leaves another code";
  char buffer[] = "######";
  std::int32_t size = 7;
  EXPECT_EQ(advapi32().GetUserNameA(buffer, &size), 0);
  EXPECT_EQ(advapi32().LastError(), error::kNoneMapped);
  EXPECT_STREQ(buffer, "######");
}

// Neither in the environment nor in the user database: reading finds nothing, and whoever may not
// write at the root is told so.
TEST_F(SystemFault, WithoutAHomeTheStoresLieAtTheRoot) {
  EXPECT_TRUE(testing::AsOrdinaryUser([] {
    other_system.lacks_user = true;
    ::setenv("HOME", "", 1);
    ::unsetenv("XDG_DATA_HOME");
    ::unsetenv("XDG_CONFIG_HOME");
    Registry registry(UserRegistry());
    Registry::Handle key = 0;
    char value[20];
    const fs::path profile = profile_store::NamedProfile(nullptr);
    return DataFolder() == "/.local/share/quorvane" && profile == "/.config/quorvane/profile.ini" &&
           registry.Open(kCurrentUser, "A", 131097, &key) == error::kFileNotFound &&
           registry.Create(kCurrentUser, "A", 63, &key, nullptr) == error::kRegistryIoFailed &&
           profile_store::Read(profile, "s", "k", "none", value, sizeof value) == 4 &&
           !profile_store::Write(profile, "s", "k", "v");
  }));
}

TEST_F(SystemFault, AdaptersThatTheKernelDoesNotTellAreAnError) {
  other_system.hides_adapters = true;
  std::int32_t size = 0;
  EXPECT_EQ(iphlpapi().GetAdaptersInfo(nullptr, &size), error::kGeneralFailure);
  EXPECT_EQ(size, 0);
}

TEST_F(SystemFault, AnAdaptersTypeIsThatOfItsLink) {
  for (const auto& [link, type] : std::initializer_list<std::pair<int, std::uint32_t>>{
           {ARPHRD_ETHER, 6}, {ARPHRD_PPP, 23}, {ARPHRD_TUNNEL, 1}, {ARPHRD_LOOPBACK, 1}}) {
    other_system.link_type = link;
    const auto adapters = KernelAdapters();
    ASSERT_TRUE(adapters.has_value() && !adapters->empty());
    for (const AdapterInfoRecord& adapter : *adapters) EXPECT_EQ(adapter.type, type) << link;
  }
}

TEST_F(SystemFault, NoAdapterIsAnAnswerOfItsOwn) {
  other_system.lacks_adapters = true;
  std::int32_t size = 640;
  EXPECT_EQ(iphlpapi().GetAdaptersInfo(nullptr, &size), error::kNoData);
  EXPECT_EQ(size, 0);
}

}  // namespace
}  // namespace quorvane
