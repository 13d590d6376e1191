// Proves what the list of identities must be in itself: ids read in the right byte order,
// generations without a gap or a double, and the status bits that a container expects. Whether each
// value is the right one, the package tests see in the built module.
#include "control/interface/identities.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>

namespace quorvane::identities {
namespace {

std::string BytesOf(const Guid& id) {
  std::string bytes(sizeof id, '\0');
  std::memcpy(bytes.data(), &id, sizeof id);
  return bytes;
}

TEST(ParseGuid, GivesTheMemoryFormOfTheComponentModel) {
  constexpr Guid kId = ParseGuid("00112233-4455-6677-8899-AABBCCDDEEFF");
  EXPECT_EQ(BytesOf(kId),
            std::string("\x33\x22\x11\x00\x55\x44\x77\x66\x88\x99\xAA\xBB\xCC\xDD\xEE\xFF", 16));
}

TEST(Generations, CountTheirMinorVersionsFromZero) {
  std::uint16_t minor = 0;
  for (const Generation& generation : kGenerations) EXPECT_EQ(generation.minor_version, minor++);
  EXPECT_EQ(kPresent.minor_version, kClassMinor);
}

TEST(Generations, AreNamedAfterTheClassButForThePresentOne) {
  for (const Generation& generation : kGenerations) {
    const bool is_present = &generation == &kPresent;
    EXPECT_EQ(generation.entry, is_present ? std::string(kInterfaceName)
                                           : std::string(kClassName) + "___v" +
                                                 std::to_string(generation.minor_version));
  }
}

TEST(Generations, ShareNoId) {
  std::set<std::string> ids{BytesOf(kLibraryId), BytesOf(kClassId)};
  for (const Generation& generation : kGenerations) {
    EXPECT_TRUE(ids.insert(BytesOf(generation.interface_id)).second) << generation.entry;
    EXPECT_TRUE(ids.insert(BytesOf(generation.source_id)).second) << generation.entry;
  }
}

TEST(MiscStatus, IsInvisibleAtRunTimeAndActiveWhenVisible) {
  enum : std::uint32_t {
    kRecomposeOnResize = 0x1,
    kCantLinkInside = 0x10,
    kInsideOut = 0x80,
    kActivateWhenVisible = 0x100,
    kInvisibleAtRunTime = 0x400,
    kNoUiActivate = 0x4000,
    kSetClientSiteFirst = 0x20000,
  };
  EXPECT_EQ(kMiscStatus, kRecomposeOnResize | kCantLinkInside | kInsideOut | kActivateWhenVisible |
                             kInvisibleAtRunTime | kNoUiActivate | kSetClientSiteFirst);
  EXPECT_EQ(kMiscStatus, 148881U);
}

TEST(Members, GiveGetAndPutOfAPropertyOneIdAndOneType) {
  for (const Member& one : kMembers) {
    for (const Member& other : kMembers) {
      const bool same_name = std::string(one.name) == other.name;
      EXPECT_EQ(same_name, one.dispatch_id == other.dispatch_id) << one.name << other.name;
      EXPECT_TRUE(!same_name || one.type == other.type) << one.name;
    }
    EXPECT_EQ(one.argument[0] != '\0', one.kind == MemberKind::kPropertyPut) << one.name;
  }
}

}  // namespace
}  // namespace quorvane::identities
