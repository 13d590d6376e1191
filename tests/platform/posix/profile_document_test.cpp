// Proves that a profile document keeps the bytes of the lines it does not change, in every
// encoding.

#include "platform/posix/profile_document.h"

#include <gtest/gtest.h>

#include <string>

namespace quorvane {
namespace {

std::string After(std::string_view before, void (*change)(ProfileDocument&)) {
  ProfileDocument document(before);
  change(document);
  return document.Bytes().value_or("(none)");
}

void SetB(ProfileDocument& document) { document.SetValue(u"x", u"b", u"9"); }
void AddC(ProfileDocument& document) { document.SetValue(u"x", u"c", u"3"); }
void AddSection(ProfileDocument& document) { document.SetValue(u"new", u"k", u"v"); }

TEST(ProfileDocument, ComesOutAsItWentIn) {
  const std::string all_kinds[] = {
      "",
      "\n",
      "a",
      "[x]\r\nb=2\n\r\r\n\n[y",
      "; comment\n\n  [ x ] behind \n b = 2 \n nosign\n=\n",
      "\xEF\xBB\xBF[x]\n",
      "\xEF\xBB\xBF",
      "[x]\nb=\xFF\xFE no utf-8\n",
      std::string("\xFF\xFE[\0x\0]\0\r\0\n\0o\0\0\xD8", 16),
      std::string("\xFE\xFF\0[\0x\0]\0\r\0\n\0o", 14),
      std::string("[x]\nzero=\0\n", 11),
  };
  for (const std::string& bytes : all_kinds) EXPECT_EQ(ProfileDocument(bytes).Bytes(), bytes);
}

TEST(ProfileDocument, ChangesOneLineAndKeepsItsSpelling) {
  EXPECT_EQ(After(" ; c\n [ X ] \n\n  B = 2 ;\n\ta\t\n", SetB), " ; c\n [ X ] \n\n  B =9\n\ta\t\n");
  EXPECT_EQ(After("[x]\nb\n", SetB), "[x]\nb=9\n");
}

TEST(ProfileDocument, AddsBehindTheLastLineThatIsNotBlank) {
  EXPECT_EQ(After("[x]\nb=2\n; c\n\n \t\n[y]\n", AddC), "[x]\nb=2\n; c\nc=3\n\n \t\n[y]\n");
  EXPECT_EQ(After("[x]\n\n\n[y]\n", AddC), "[x]\nc=3\n\n\n[y]\n");
  EXPECT_EQ(After("[x]", AddC), "[x]\nc=3\n");
}

TEST(ProfileDocument, WritesTheLineEndThatTheFileHas) {
  EXPECT_EQ(After("[x]\r\nb=2", AddC), "[x]\r\nb=2\r\nc=3\r\n");
  EXPECT_EQ(After("[x]\rb=2\r", AddC), "[x]\rb=2\rc=3\r");
  EXPECT_EQ(After("", AddC), "[x]\nc=3\n");
  EXPECT_EQ(After("[x]\r\nb=2\n", AddSection), "[x]\r\nb=2\n[new]\r\nk=v\r\n");
}

TEST(ProfileDocument, TakesComments) {
  ProfileDocument document("[x]\n;b=1\n ; b=2\n#b=3\nb=4\n");
  EXPECT_EQ(document.Value(u"x", u"b"), u"4");
  EXPECT_EQ(document.Value(u"x", u"#b"), u"3");
  EXPECT_EQ(document.KeyNames(u"x"), (std::vector<std::u16string>{u"#b", u"b"}));
}

TEST(ProfileDocument, TakesNeitherABlankLineNorAHeadingForAKey) {
  ProfileDocument document("[x=1]\n\n \nb=2\n");
  EXPECT_EQ(document.Value(u"x=1", u""), std::nullopt);
  EXPECT_EQ(document.Value(u"x=1", u"[x"), std::nullopt);
  EXPECT_EQ(document.KeyNames(u"x=1"), std::vector<std::u16string>{u"b"});
}

// As other systems have it: set again and again it stays one line.
TEST(ProfileDocument, FindsACommentByItsWholeName) {
  ProfileDocument document("[x]\nb=4\n");
  document.SetValue(u"x", u";c", u"1");
  document.SetValue(u"x", u";c", u"2");
  EXPECT_EQ(document.Value(u"x", u";c"), u"2");
  EXPECT_EQ(document.Value(u"x", u"c"), std::nullopt);
  EXPECT_EQ(document.Bytes(), "[x]\nb=4\n;c=2\n");
}

TEST(ProfileDocument, CallsTheLinesInFrontASectionWithoutAName) {
  ProfileDocument document("a=1\n[x]\na=2\n");
  EXPECT_EQ(document.Value(u"", u"a"), u"1");
  document.SetValue(u" ", u"z", u"3");
  EXPECT_EQ(document.Bytes(), "a=1\nz=3\n[x]\na=2\n");
}

TEST(ProfileDocument, TakesUtf8WhereItIsValidAndTheSystemsPageElse) {
  EXPECT_EQ(ProfileDocument("[x]\nb=\xC3\xA9\n").Value(u"x", u"b"), u"\u00E9");
  EXPECT_EQ(ProfileDocument("[x]\nb=\xE9\n").Value(u"x", u"b"), u"\u00E9");
  ProfileDocument unmarked("[x]\nb=\xE9\n");
  unmarked.SetValue(u"x", u"c", u"\u20AC");
  EXPECT_EQ(unmarked.Bytes(), "[x]\nb=\xE9\nc=\x80\n");
  ProfileDocument fresh("");
  fresh.SetValue(u"x", u"c", u"\u20AC");
  EXPECT_EQ(fresh.Bytes(), "[x]\nc=\xE2\x82\xAC\n");
}

TEST(ProfileDocument, WritesUtf16WhereItReadsIt) {
  ProfileDocument document(std::string_view("\xFF\xFE[\0x\0]\0\n\0", 10));
  document.SetValue(u"x", u"c", u"\u20AC");
  EXPECT_EQ(document.Bytes(), std::string("\xFF\xFE[\0x\0]\0\n\0c\0=\0\xAC\x20\n\0", 18));
}

TEST(ProfileDocument, WritesUtf16WithTheHighByteFirstWhereItReadsIt) {
  ProfileDocument document(std::string_view("\xFE\xFF\0[\0x\0]\0\n\0b\0=\x20\xAC", 16));
  EXPECT_EQ(document.Value(u"x", u"b"), u"\u20AC");
  document.SetValue(u"x", u"b", u"1");
  EXPECT_EQ(document.Bytes(), std::string("\xFE\xFF\0[\0x\0]\0\n\0b\0=\0"
                                          "1",
                                          16));
}

TEST(ProfileDocument, HasNoBytesWhereItCouldNotKeepThoseItWasGiven) {
  EXPECT_EQ(ProfileDocument(std::string_view("\xFF\xFE[\0x\0]\0\n\0odd", 13)).Bytes(),
            std::nullopt);
  EXPECT_EQ(ProfileDocument("\xEF\xBB\xBF[x]\nb=\xFF\n").Bytes(), std::nullopt);
}

TEST(ProfileDocument, FoldsLettersOfEveryScript) {
  ProfileDocument document(
      "[\xD0\x96\xC3\xA9]\nstra\xC3\x9F"
      "e=1\n");
  EXPECT_EQ(document.Value(u"\u0436\u00C9", u"STRA\u00DFE"), u"1");
  EXPECT_EQ(document.Value(u"\u0436\u00C9", u"STRASSE"), std::nullopt);
}

TEST(ProfileDocument, KeepsAnEmptyLineApartFromACarriageReturnThatComesToStandBeforeIt) {
  EXPECT_EQ(After("[x]\rb=1\n\n[y]\n", [](ProfileDocument& d) { d.RemoveKey(u"x", u"b"); }),
            "[x]\r\r\n[y]\n");
  EXPECT_EQ(After("[x]\rb=1\n\n[y]\n", AddC), "[x]\rb=1\nc=3\r\r\n[y]\n");
}

TEST(ProfileDocument, RemovesAKeyOrAWholeSectionWithItsComments) {
  EXPECT_EQ(After("[x]\nb=1\nb=2\n", [](ProfileDocument& d) { d.RemoveKey(u"X", u"B"); }),
            "[x]\nb=2\n");
  EXPECT_EQ(After("[w]\n[x]\n; c\nb=1\n[y]\n", [](ProfileDocument& d) { d.RemoveSection(u"X"); }),
            "[w]\n[y]\n");
}

}  // namespace
}  // namespace quorvane
