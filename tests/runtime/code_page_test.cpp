// Proves the code of one character, as it follows from its bytes.

#include "runtime/code_page.h"

#include <gtest/gtest.h>

#include <utility>

namespace quorvane {
namespace {

// Gives the same bytes for any character.
class FixedPage final : public CodePage {
 public:
  explicit FixedPage(std::string bytes) : bytes_(std::move(bytes)) {}
  [[nodiscard]] std::string ToBytes(std::u16string_view /*characters*/) const override {
    return bytes_;
  }
  [[nodiscard]] std::u16string FromBytes(std::string_view /*bytes*/) const override { return {}; }

 private:
  std::string bytes_;
};

TEST(CodePage, TakesOneByteAsItsValue) {
  EXPECT_EQ(FixedPage("A").CodeOf(u'x'), 65);
  EXPECT_EQ(FixedPage("\xE9").CodeOf(u'x'), 0xE9);
  EXPECT_EQ(FixedPage(std::string(1, '\0')).CodeOf(u'x'), 0);
}

TEST(CodePage, JoinsTwoBytesToASignedNumber) {
  EXPECT_EQ(FixedPage("\x12\x0F").CodeOf(u'x'), 0x120F);
  EXPECT_EQ(FixedPage("\x82\xA0").CodeOf(u'x'), 0x82A0 - 0x10000);
}

TEST(CodePage, TakesNoOrMoreBytesForAQuestionMark) {
  EXPECT_EQ(FixedPage("").CodeOf(u'x'), 63);
  EXPECT_EQ(FixedPage("\xE2\x82\xAC").CodeOf(u'x'), 63);
}

}  // namespace
}  // namespace quorvane
