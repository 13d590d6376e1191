// Proves that the running module's name is the one it was loaded by, whatever the program does
// afterwards or was called by; and which shapes a pointer has that nobody sees.

#include "platform/app.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "platform/screen.h"
#include "runtime/utf8.h"
#include "tests/platform/posix/processes.h"
#include "tests/support/raises.h"

namespace quorvane {
namespace {

TEST(PosixScreen, KnowsTwoShapesOfThePointer) {
  for (std::int16_t shape = -1; shape <= 99; ++shape) {
    const bool is_known = shape == Screen::kDefaultPointer || shape == Screen::kHourglass;
    EXPECT_EQ(testing::ErrorNumberOf([&] { screen().SetMousePointer(shape); }), is_known ? 0 : 5);
  }
}

// In a process of its own, as the folder is the whole program's.
TEST(PosixApp, StaysWhereItWasLoadedFrom) {
  EXPECT_TRUE(testing::AllProcesses(1, [](int /*number*/) {
    if (::chdir("/") != 0) return false;
    const std::string file = ToUtf8(app().Path()) + "/" + ToUtf8(app().EXEName());
    std::error_code ignored;
    return std::filesystem::equivalent(file, "/proc/self/exe", ignored);
  }));
}

TEST(PosixApp, IsNotWhatTheProgramIsCalledBy) {
  const std::string file = std::filesystem::read_symlink("/proc/self/exe").native();
  EXPECT_TRUE(testing::AllProcesses(1, [&](int /*number*/) {
    return ::execl(file.c_str(), "elsewhere/another", "--gtest_brief=1",
                   "--gtest_filter=App.*:PosixApp.StaysWhereItWasLoadedFrom", nullptr) == 0;
  }));
}

}  // namespace
}  // namespace quorvane
