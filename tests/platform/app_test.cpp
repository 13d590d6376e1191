// Path and EXEName of the running module: together with a separator and the extension they name the
// file of this very test program.

#include "platform/app.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/raises.h"

namespace quorvane {
namespace {

TEST(App, EXENameHasNeitherFolderNorExtension) {
  EXPECT_EQ(app().EXEName(), Text(u"platform_tests"));
}

TEST(App, PathAndEXENameLeadToTheProgramsFile) {
  const std::filesystem::path folder(app().Path().Characters());
  const std::u16string name = app().EXEName().Characters();
  EXPECT_TRUE(folder.is_absolute());
  EXPECT_TRUE(std::filesystem::exists(folder / name) ||
              std::filesystem::exists(folder / (name + u".exe")));
}

TEST(App, PathEndsWithoutASeparator) {
  const char16_t last = app().Path().Characters().back();
  EXPECT_NE(last, u'\\');
  EXPECT_NE(last, u'/');
}

}  // namespace
}  // namespace quorvane
