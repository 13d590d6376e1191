// The file of a form on disk: reading it whole, and replacing it so that its name always leads to a
// whole form. And that of a log of calls.

#include <algorithm>

#include "programs/form_host/form_file.h"
#include "programs/form_host/log_file.h"
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

TEST_F(FormStorage, LeavesAFileThatMayOnlyBeRead) {
  Write(u"a.form", "B = 2\n");
  fs::permissions(folder_.Path(u"a.form"), fs::perms::owner_read);
  EXPECT_EQ(SaveError(u"a.form"), At(u"a.form") + ": it is read-only");
  EXPECT_EQ(Read(u"a.form"), "B = 2\n");
  EXPECT_EQ(CountOfFiles(), 1);
  fs::permissions(folder_.Path(u"a.form"), fs::perms::owner_all);
}

TEST_F(FormStorage, KnowsOnePlaceByAllItsNames) {
  Write(u"a.form", "");
  EXPECT_TRUE(IsSamePlace(At(u"a.form"), At(u"none/../a.form")));
  EXPECT_TRUE(IsSamePlace(At(u"b.form"), At(u"./b.form")));
  EXPECT_FALSE(IsSamePlace(At(u"a.form"), At(u"b.form")));
}

// A call that calls back, one that does not, and one whose end is yet to come.
void TellThreeCalls(CallLog& log) {
  log.Note("Open \u0141");
  log.Begin("> A.Load(bag given)");
  log.Count("< B.AddRef()", "1");
  log.Begin("< B.Read(name \"x\")");
  log.End("< B.Read", "E_FAIL");
  log.End("> A.Load", "S_OK");
  log.Begin("> A.Close()");
}
constexpr const char* kThreeCalls =
    "-- Open \u0141\n"
    "> A.Load(bag given)\n"
    "  < B.AddRef() = 1\n"
    "  < B.Read(name \"x\") = E_FAIL\n"
    "> A.Load returns S_OK\n"
    "> A.Close()";

TEST_F(FormStorage, LogHoldsACallFromTheMomentItIsMade) {
  Write(u"calls.log", "old");
  CallLog log;
  LogFile file(At(u"calls.log"));
  file.Follow(log);
  TellThreeCalls(log);
  EXPECT_EQ(Read(u"calls.log"), kThreeCalls);
  log.End("> A.Close", "S_FALSE");
  EXPECT_EQ(Read(u"calls.log"), std::string(kThreeCalls) + " = S_FALSE\n");
  EXPECT_NO_THROW(file.RaiseFailure());
}

TEST_F(FormStorage, ALogCanTellCallsFromCounts) {
  CallLog log;
  std::string calls;
  log.AddReader([&](std::string_view piece, CallLog::Kind kind) {
    if (kind == CallLog::Kind::kCall) calls += piece;
  });
  TellThreeCalls(log);
  EXPECT_EQ(calls.find("AddRef"), std::string::npos);
  EXPECT_NE(calls.find("> A.Load(bag given)\n  < B.Read"), std::string::npos) << calls;
}

TEST_F(FormStorage, ALogThatCannotBeMadeSaysWhere) {
  const std::string place = At(u"none/calls.log");
  EXPECT_EQ(ErrorOf([&] { const LogFile file(place); }), place + ": the log cannot be made there");
}

}  // namespace
}  // namespace quorvane::programs
