// Proves the tables of the type library that Windows searches by hash, and that an entry is stored
// once. The hash values were taken from libraries that other compilers wrote.
#include "control/resources/msft_tables.h"

#include <gtest/gtest.h>

namespace quorvane::typelib {
namespace {

TEST(NameHash, IsTheOneOfTheSystem) {
  EXPECT_EQ(NameHash("QuorvaneSecurity"), 0xF66E);
  EXPECT_EQ(NameHash("GetCRCValue"), 0x0038);
  EXPECT_EQ(NameHash("SecurityCtrl___v0"), 0xE8BB);
}

TEST(NameHash, TakesNoNoticeOfCase) { EXPECT_EQ(NameHash("useproxy"), NameHash("USEPROXY")); }

TEST(NameHash, TakesYForUAndWForV) {
  EXPECT_EQ(NameHash("Yy"), NameHash("uU"));
  EXPECT_EQ(NameHash("Ww"), NameHash("vV"));
  EXPECT_NE(NameHash("U"), NameHash("V"));
}

TEST(IdBucket, MixesAllBytes) {
  EXPECT_EQ(IdBucket(identities::ParseGuid("00000000-0000-0000-0000-000000000000")), 0U);
  EXPECT_EQ(IdBucket(identities::ParseGuid("00010002-0004-0008-1000-000000000000")), 0x0FU ^ 0x10U);
  EXPECT_EQ(IdBucket(identities::ParseGuid("00000000-0000-0000-0000-0000000000FF")), 0U);
}

TEST(NameTable, StoresANameOnce) {
  NameTable names;
  const std::uint32_t first = names.AddMember("ServerPort", 0);
  const std::uint32_t size = names.Entries().Size();
  EXPECT_EQ(names.AddMember("ServerPort", 0), first);
  EXPECT_EQ(names.Entries().Size(), size);
  EXPECT_EQ(names.Count(), 1U);
  EXPECT_EQ(names.Characters(), 10U);
}

TEST(NameTable, ChainsNamesOfOneBucket) {
  // Three ways to write the same hash.
  NameTable names;
  names.AddArgument("Yu");
  const std::uint32_t second = names.AddArgument("Uy");
  const std::uint32_t third = names.AddArgument("uu");
  const Bytes buckets = names.HashTable();
  EXPECT_EQ(buckets.Data()[4 * (NameHash("uu") % 128)], third);
  EXPECT_EQ(names.Entries().Data()[third + 4], second);
  EXPECT_EQ(names.Entries().Data()[second + 4], 0);
}

TEST(TextTable, FillsShortTextsUpToEightBytes) {
  TextTable texts;
  texts.Add("x");
  EXPECT_EQ(texts.Entries().Size(), 8U);
  EXPECT_EQ(texts.Add("seven77"), 8U);
  EXPECT_EQ(texts.Entries().Size(), 8U + 12U);
}

TEST(TypeTable, StoresADescriptionOnce) {
  constexpr std::uint16_t kText = 8;
  constexpr std::uint16_t kInteger = 3;
  TypeTable types;
  EXPECT_EQ(types.PointerTo(kText), 0U);
  EXPECT_EQ(types.PointerTo(kInteger), 8U);
  EXPECT_EQ(types.PointerTo(kText), 0U);
  EXPECT_EQ(types.Named(0), 16U);
  EXPECT_EQ(types.Entries().Size(), 24U);
}

}  // namespace
}  // namespace quorvane::typelib
