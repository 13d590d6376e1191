// The settings on the form host's command line and on its output.

#include "programs/form_host/settings.h"

#include "programs/common/options.h"
#include "programs/form_host/form_file.h"
#include "tests/support/raises.h"

namespace quorvane::programs {
namespace {

TEST(Display, ShowsAPasswordAsAsterisksWhateverItsLength) {
  EXPECT_EQ(Display(u"Password", Text(u"x")), "\"********\"");
  EXPECT_EQ(Display(u"Password", Text(std::size_t{20}, u'x')), "\"********\"");
  EXPECT_EQ(Display(u"Password", std::int16_t{1234}), "\"********\"");
  EXPECT_EQ(Display(u"Password", Text(u"")), "\"\"");
}

TEST(Display, SpellsValuesAsAFormFileDoes) {
  EXPECT_EQ(Display(u"UserName", Text(u"a\"b")), R"("a\"b")");
  EXPECT_EQ(Display(u"ServerPort", std::int16_t{-1}), "-1");
  EXPECT_EQ(Display(u"UseProxy", kTrue), "True");
}

TEST(TextToEdit, ShowsATextAsItIsUnlessItCouldBeTakenForAnother) {
  EXPECT_EQ(TextToEdit(u"UserName", Text(u"a\"b\\")), Text(u"a\"b\\"));
  EXPECT_EQ(TextToEdit(u"UserName", Text(u"\"b")), Text(u"\"\\\"b\""));
  EXPECT_EQ(TextToEdit(u"UserName", Text(u"a\nb")), Text(u"\"a\\nb\""));
  EXPECT_EQ(TextToEdit(u"ServerPort", std::int16_t{-1}), Text(u"-1"));
  EXPECT_EQ(TextToEdit(u"Password", Text(u"x")), Text(u"********"));
  EXPECT_EQ(TextToEdit(u"Password", Text()), Text());
}

TEST(ValueOfEdited, ReadsBackWhatIsShown) {
  for (const Text& text : {Text(u""), Text(u"a\"b\\"), Text(u"\"b"), Text(u"a\nb"), Text(u" x ")})
    EXPECT_EQ(ValueOfEdited(TextToEdit(u"UserName", text)), TaggedValue(text));
  EXPECT_EQ(ValueOfEdited(u"8080"), TaggedValue(Text(u"8080")));
  EXPECT_THROW(static_cast<void>(ValueOfEdited(u"\"open")), FormFileError);
}

TEST(ParseChange, SplitsAtTheFirstEqualsSign) {
  const Change change = ParseChange("ServerFile=/a?b=c");
  EXPECT_EQ(change.setting, Text(u"ServerFile"));
  EXPECT_EQ(change.value, Text(u"/a?b=c"));
  EXPECT_EQ(ParseChange("Password=").value, Text(u""));
}

TEST(ParseChange, KnowsTheSevenSettingsInTheirSpelling) {
  for (const std::string name : {"ServerAddress", "ServerPort", "ServerFile", "UseProxy",
                                 "ProxyServer", "UserName", "Password"})
    EXPECT_EQ(ParseChange(name + "=x").setting, FromUtf8(name));
  for (const std::string word : {"Username=x", "serverport=1", "=x", "GetCRCValue=1", "ServerPort"})
    EXPECT_THROW(static_cast<void>(ParseChange(word)), UsageError) << word;
}

}  // namespace
}  // namespace quorvane::programs
