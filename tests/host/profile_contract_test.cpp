// Proves that the real profile calls and their stand-in read and write profile files alike.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "host/basAPI_api.h"
#include "tests/host/private_stores.h"
#include "tests/support/raises.h"

namespace quorvane::basAPI_api {
namespace {

class ProfileContract : public ::testing::Test {
 protected:
  Text Read(Text section, Text key) {
    Text file = file_;
    return ReadPrivateProfileValue(section, key, file);
  }
  Boolean16 Write(Text section, Text key, Text value) {
    Text file = file_;
    return WritePrivateProfileValue(section, key, value, file);
  }
  void Lines(const std::string& lines) { testing::WriteBytes(file_, lines); }
  // The file's lines, whichever line end the system writes.
  std::string Lines() const {
    std::string bytes = testing::BytesOf(file_);
    std::erase(bytes, '\r');
    return bytes;
  }

  Text file_ = testing::FreshProfileName();
};

TEST_F(ProfileContract, GivesTheEmptyTextForWhatIsNotThere) {
  EXPECT_EQ(Read(u"S", u"k"), Text(u""));
  EXPECT_EQ(Write(u"S", u"k", u"v"), kTrue);
  EXPECT_EQ(Read(u"T", u"k"), Text(u""));
  EXPECT_EQ(Read(u"S", u"l"), Text(u""));
}

TEST_F(ProfileContract, WritesSectionsAndKeysInOrder) {
  EXPECT_EQ(Write(u"S", u"k", u"v"), kTrue);
  EXPECT_EQ(Write(u"s", u"K", u"w"), kTrue);
  EXPECT_EQ(Write(u"S", u"k2", u"x"), kTrue);
  EXPECT_EQ(Write(u"T", u"k", u"1"), kTrue);
  EXPECT_EQ(Write(u"S", u"k3", u"y"), kTrue);
  EXPECT_EQ(Lines(), "[S]\nk=w\nk2=x\nk3=y\n[T]\nk=1\n");
}

TEST_F(ProfileContract, CutsAt255Characters) {
  EXPECT_EQ(Write(u"S", u"k", Text(std::size_t{255}, u'v')), kTrue);
  EXPECT_EQ(Read(u"S", u"k"), Text(std::size_t{255}, u'v'));
  EXPECT_EQ(Write(u"S", u"k", Text(std::size_t{300}, u'w')), kTrue);
  EXPECT_EQ(Read(u"S", u"k"), Text(std::size_t{255}, u'w'));
}

TEST_F(ProfileContract, ReadsNamesWithoutCaseAndOuterBlanks) {
  Lines("; head\n\n[ Sec ]\n  key = value  \n[other]\nkey=2\n");
  EXPECT_EQ(Read(u"Sec", u"key"), Text(u"value"));
  EXPECT_EQ(Read(u"sEC", u"KEY"), Text(u"value"));
  EXPECT_EQ(Read(u" Sec ", u" key "), Text(u"value"));
  EXPECT_EQ(Read(u"Other", u"key"), Text(u"2"));
}

TEST_F(ProfileContract, TakesOnePairOfQuotesAway) {
  Lines("[q]\na=\" a b \"\nb='x'\nc=\"half\nd=a\"b\"\ne=\"\"\nf=\n");
  EXPECT_EQ(Read(u"q", u"a"), Text(u" a b "));
  EXPECT_EQ(Read(u"q", u"b"), Text(u"x"));
  EXPECT_EQ(Read(u"q", u"c"), Text(u"\"half"));
  EXPECT_EQ(Read(u"q", u"d"), Text(u"a\"b\""));
  EXPECT_EQ(Read(u"q", u"e"), Text(u""));
  EXPECT_EQ(Read(u"q", u"f"), Text(u""));
}

TEST_F(ProfileContract, LooksAtTheFirstSectionAndTheFirstKeyOfAName) {
  Lines("[x]\nb=2\nb=3\n[x]\nb=4\nc=1\n");
  EXPECT_EQ(Read(u"x", u"b"), Text(u"2"));
  EXPECT_EQ(Read(u"x", u"c"), Text(u""));
}

TEST_F(ProfileContract, ReadsWhatStandsAroundTheSigns) {
  Lines("[a]b]\ny=2\n[b] behind\nz=1 ; no comment\nnosign\n=unnamed\nk=l=m\n");
  EXPECT_EQ(Read(u"a]b", u"y"), Text(u"2"));
  EXPECT_EQ(Read(u"b", u"z"), Text(u"1 ; no comment"));
  EXPECT_EQ(Read(u"b", u"nosign"), Text(u""));
  EXPECT_EQ(Read(u"b", u"k"), Text(u"l=m"));
  EXPECT_EQ(Read(u"b", u"k=l"), Text(u""));
}

TEST_F(ProfileContract, ReadsEveryLineEnd) {
  Lines("[x]\r\nb=2\r\n[y]\nc=3\n[z]\rd=4");
  EXPECT_EQ(Read(u"x", u"b"), Text(u"2"));
  EXPECT_EQ(Read(u"y", u"c"), Text(u"3"));
  EXPECT_EQ(Read(u"z", u"d"), Text(u"4"));
}

TEST_F(ProfileContract, ChangesTheKeysLineAndNoOther) {
  Lines("; head\n[x]\nb=2\n; tail\n[y]\nc=1\n");
  EXPECT_EQ(Write(u"x", u"B", u"3"), kTrue);
  EXPECT_EQ(Write(u"x", u"new", u"4"), kTrue);
  EXPECT_EQ(Lines(), "; head\n[x]\nb=3\n; tail\nnew=4\n[y]\nc=1\n");
}

TEST_F(ProfileContract, EndsTheLastLineBeforeItAddsOne) {
  Lines("[x]\nb=2");
  EXPECT_EQ(Write(u"x", u"c", u"3"), kTrue);
  EXPECT_EQ(Lines(), "[x]\nb=2\nc=3\n");
}

TEST_F(ProfileContract, TakesKeysAndSectionsAway) {
  Lines("[x]\nb=2\nc=3\n[y]\nd=4\n");
  EXPECT_EQ(Write(u"X", u"B", Text()), kTrue);
  EXPECT_EQ(Lines(), "[x]\nc=3\n[y]\nd=4\n");
  EXPECT_EQ(Write(u"Y", Text(), Text()), kTrue);
  EXPECT_EQ(Lines(), "[x]\nc=3\n");
  EXPECT_EQ(Write(u"none", u"none", Text()), kTrue);
  EXPECT_EQ(Lines(), "[x]\nc=3\n");
}

TEST_F(ProfileContract, ListsSectionsAndKeysWithTheirZeros) {
  Lines("[one]\na=1\nbb=2\n[two]\nc=3\n");
  EXPECT_EQ(Read(Text(), u"a"), Text(std::u16string(u"one\0two\0", 8)));
  EXPECT_EQ(Read(u"one", Text()), Text(std::u16string(u"a\0bb\0", 5)));
  EXPECT_EQ(Read(u"none", Text()), Text(u""));
}

TEST_F(ProfileContract, HoldsCharactersOfTheCodePage) {
  EXPECT_EQ(Write(u"caf\u00E9", u"\u00FCber", u"\u20AC 5"), kTrue);
  EXPECT_EQ(Read(u"caf\u00E9", u"\u00FCber"), Text(u"\u20AC 5"));
}

TEST_F(ProfileContract, ReadsUtf8AndUtf16BehindTheirMarks) {
  Lines("\xEF\xBB\xBF[x]\nb=\xC3\xA9\n");
  EXPECT_EQ(Read(u"x", u"b"), Text(u"\u00E9"));
  EXPECT_EQ(Write(u"x", u"c", u"1"), kTrue);
  EXPECT_EQ(Lines(), "\xEF\xBB\xBF[x]\nb=\xC3\xA9\nc=1\n");
  Lines(std::string("\xFF\xFE[\0x\0]\0\n\0b\0=\0\xE9\0\n\0", 18));
  EXPECT_EQ(Read(u"x", u"b"), Text(u"\u00E9"));
  EXPECT_EQ(Write(u"x", u"c", u"1"), kTrue);
  EXPECT_EQ(Read(u"x", u"c"), Text(u"1"));
}

TEST_F(ProfileContract, ReadsBytesOfTheCodePage) {
  Lines("[x]\nb=\xE9\n");
  EXPECT_EQ(Read(u"x", u"b"), Text(u"\u00E9"));
  EXPECT_EQ(Write(u"x", u"c", u"\u00E9"), kTrue);
  EXPECT_EQ(Lines(), "[x]\nb=\xE9\nc=\xE9\n");
}

TEST_F(ProfileContract, FailsWhereNoFileCanBe) {
  file_ = file_ + u"/none/x.ini";
  EXPECT_EQ(Write(u"S", u"k", u"v"), kFalse);
  EXPECT_EQ(Read(u"S", u"k"), Text(u""));
  file_ = u"";
  EXPECT_EQ(Write(u"S", u"k", u"v"), kFalse);
}

TEST_F(ProfileContract, KeepsTheSystemsOwnProfileApart) {
  Text section = u"QuorvaneTests";
  Text key = u"key";
  Text value = u"value";
  EXPECT_EQ(WriteProfileValue(section, key, value), kTrue);
  EXPECT_EQ(ReadProfileValue(section, key), Text(u"value"));
  EXPECT_EQ(Read(section, key), Text(u""));
  Text none;
  EXPECT_EQ(WriteProfileValue(section, none, none), kTrue);
  EXPECT_EQ(ReadProfileValue(section, key), Text(u""));
}

}  // namespace
}  // namespace quorvane::basAPI_api
