// Proves what a call is given for a fixed text, and that the text after it always has its length.

#include "runtime/fixed_buffer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/support/double_byte_page.h"

namespace quorvane {
namespace {

// What is written into the buffer goes one way only.
class OneWay final : public testing::DoubleBytePage {
 public:
  std::string ToBytes(std::u16string_view /*characters*/) const override {
    ADD_FAILURE() << "nothing is to be asked for ASCII";
    return {};
  }
};

// Makes more characters than bytes, as no page of the platform does.
class Growing final : public CodePage {
 public:
  std::string ToBytes(std::u16string_view characters) const override {
    return std::string(characters.size(), '?');
  }
  std::u16string FromBytes(std::string_view bytes) const override {
    return std::u16string(2 * bytes.size(), u'\u3042');
  }
};

const OneWay kPage;

TEST(FixedBuffer, StartsFullWithAZeroOfItsOwnBehind) {
  FixedBuffer<5> spaces(' ');
  EXPECT_EQ(std::string_view(spaces.Bytes(), 6), std::string_view("     \0", 6));
  EXPECT_EQ(spaces.CopyBack(kPage), u"     ");
  FixedBuffer<3> zeros('\0');
  EXPECT_EQ(zeros.CopyBack(kPage), std::u16string_view(u"\0\0\0", 3));
}

TEST(FixedBuffer, TakesBackAllBytesZerosIncluded) {
  FixedBuffer<6> buffer(' ');
  std::memcpy(buffer.Bytes(), "AB\0C", 4);
  EXPECT_EQ(buffer.CopyBack(kPage), std::u16string_view(u"AB\0C  ", 6));
}

TEST(FixedBuffer, LetsTheCallWriteOverItsZeroAndLeavesThatOut) {
  FixedBuffer<4> buffer(' ');
  std::memcpy(buffer.Bytes(), "abcde", 5);
  EXPECT_EQ(buffer.CopyBack(kPage), u"abcd");
}

TEST(FixedBuffer, TakesBackEveryByteAtEveryPlace) {
  for (std::size_t place = 0; place < 11; ++place) {
    for (int byte = 0; byte < 256; ++byte) {
      if (byte == 0x80) continue;
      FixedBuffer<11> buffer('-');
      buffer.Bytes()[place] = static_cast<char>(byte);
      std::u16string expected(11, u'-');
      expected[place] = static_cast<char16_t>(byte);
      ASSERT_EQ(buffer.CopyBack(kPage), expected) << place << ' ' << byte;
    }
  }
}

TEST(FixedBuffer, FillsUpWithSpacesWhereBytesMakeFewerCharacters) {
  FixedBuffer<6> buffer('\0');
  std::memcpy(buffer.Bytes(), "\x80\x41\x80\x42", 4);
  EXPECT_EQ(buffer.CopyBack(kPage), std::u16string_view(u"\u3041\u3042\0\0  ", 6));
}

TEST(FixedBuffer, CutsWhatIsLongerThanItself) {
  FixedBuffer<3> buffer('\0');
  buffer.Bytes()[0] = '\xFF';
  EXPECT_EQ(buffer.CopyBack(Growing()), u"\u3042\u3042\u3042");
}

}  // namespace
}  // namespace quorvane
