// The file of a form on disk: reading it whole, and replacing it so that its name always leads to a
// whole form.

#include <algorithm>

#include "programs/form_host/form_file.h"
#include "tests/support/raises.h"
#include "tests/support/temporary_folder.h"

namespace quorvane::programs {
namespace {

namespace fs = std::filesystem;

class FormStorage : public ::testing::Test {
 protected:
  [[nodiscard]] std::string At(std::u16string_view name) const {
    const std::u8string path = folder_.Path(name).u8string();
    return {path.begin(), path.end()};
  }
  void Write(std::u16string_view name, const std::string& bytes) const {
    std::ofstream(folder_.Path(name), std::ios::binary) << bytes;
  }
  [[nodiscard]] std::string Read(std::u16string_view name) const {
    std::ifstream in(folder_.Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  [[nodiscard]] auto CountOfFiles() const {
    return std::distance(fs::directory_iterator(folder_.Path(u"")), {});
  }

  template <class Body>
  static std::string ErrorOf(Body body) {
    try {
      body();
      return "none";
    } catch (const FormFileError& error) {
      return error.what();
    }
  }
  [[nodiscard]] std::string LoadError(std::u16string_view name) const {
    return ErrorOf([&] { static_cast<void>(LoadForm(At(name))); });
  }
  [[nodiscard]] std::string SaveError(std::u16string_view name) const {
    return ErrorOf([&] { SaveForm(At(name), kEntries); });
  }

  const std::vector<FormEntry> kEntries = {{u"A", std::int16_t{1}}};
  testing::TemporaryFolder folder_;
};

TEST_F(FormStorage, SavesAndLoadsUnderANameOfAnyScript) {
  SaveForm(At(u"\u00E4 \u65E5.form"), kEntries);
  EXPECT_EQ(LoadForm(At(u"\u00E4 \u65E5.form")), kEntries);
  EXPECT_EQ(Read(u"\u00E4 \u65E5.form"), "A = 1\n");
}

TEST_F(FormStorage, ReplacesTheOldFormAndLeavesNothingBesideIt) {
  Write(u"a.form", "B = 2\nC = 3\n");
  SaveForm(At(u"a.form"), kEntries);
  EXPECT_EQ(Read(u"a.form"), "A = 1\n");
  EXPECT_EQ(CountOfFiles(), 1);
}

TEST_F(FormStorage, NamesTheFileInEveryError) {
  Write(u"a.form", "A = ?");
  EXPECT_TRUE(LoadError(u"a.form").starts_with(At(u"a.form") + ": line 1: "));
  EXPECT_EQ(LoadError(u"none.form"), At(u"none.form") + ": there is no such file");
}

TEST_F(FormStorage, RefusesADirectory) {
  fs::create_directory(folder_.Path(u"d"));
  EXPECT_EQ(LoadError(u"d"), At(u"d") + ": it is not a file");
  EXPECT_EQ(SaveError(u"d"), At(u"d") + ": it is not a file");
  EXPECT_EQ(CountOfFiles(), 1);
}

TEST_F(FormStorage, RefusesAFileThatIsNoFormByItsSize) {
  Write(u"large", "");
  fs::resize_file(folder_.Path(u"large"), 16 * 1024 * 1024 + 1);
  EXPECT_EQ(LoadError(u"large"), At(u"large") + ": it is too large for a form");
  fs::resize_file(folder_.Path(u"large"), 16 * 1024 * 1024);
  EXPECT_TRUE(LoadError(u"large").starts_with(At(u"large") + ": line 1: an entry must start"));
}

TEST_F(FormStorage, LeavesTheOldFormWhenTheNewOneCannotBeMade) {
  Write(u"a.form", "B = 2\n");
  fs::create_directory(folder_.Path(u"a.form.saving"));
  fs::create_directory(folder_.Path(u"a.form.saving/in the way"));
  EXPECT_EQ(SaveError(u"a.form"), At(u"a.form") + ": no file can be made beside it");
  EXPECT_EQ(Read(u"a.form"), "B = 2\n");
}

TEST_F(FormStorage, RefusesAFolderThatIsNotThere) {
  EXPECT_EQ(SaveError(u"none/a.form"), At(u"none/a.form") + ": no file can be made beside it");
  EXPECT_EQ(CountOfFiles(), 0);
}

TEST_F(FormStorage, RefusesAnEmptyName) {
  EXPECT_EQ(ErrorOf([&] { SaveForm("", kEntries); }), ": there is no such place");
  EXPECT_NE(ErrorOf([] { static_cast<void>(LoadForm("")); }), "none");
}

}  // namespace
}  // namespace quorvane::programs
