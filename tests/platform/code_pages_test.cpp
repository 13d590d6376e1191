// Holds the tables of every code page that both systems have against each other: what is summed up
// here was recorded from Windows' side and is what the stand-in's tables must come to, too.

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "tests/support/code_pages.h"

namespace quorvane::testing {
namespace {

// FNV-1a, 32 bits.
class Sum {
 public:
  void Add(std::string_view bytes) {
    for (const char byte : bytes) value_ = (value_ ^ static_cast<unsigned char>(byte)) * 16777619U;
  }
  void Add(std::u16string_view units) {
    for (const char16_t unit : units)
      Add(std::string{static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)});
  }
  [[nodiscard]] std::uint32_t Value() const { return value_; }

 private:
  std::uint32_t value_ = 2166136261U;
};

// Characters for private use belong to the makers of fonts; and 950 has two codes for these four.
bool IsLeftOpen(int page, char16_t unit) {
  const bool has_pairs = page == 936 || page == 949 || page == 950;
  if (has_pairs && unit >= 0xE000 && unit <= 0xF8FF) return true;
  return page == 950 && (unit == 0x2550 || unit == 0x255E || unit == 0x2561 || unit == 0x256A);
}

std::uint32_t SumOfEncoding(int number, const CodePage& page) {
  Sum sum;
  for (unsigned unit = 0; unit < 0x10000; ++unit) {
    const auto character = static_cast<char16_t>(unit);
    if (!IsLeftOpen(number, character)) sum.Add(page.ToBytes({&character, 1}) + ';');
  }
  return sum.Value();
}

std::uint32_t SumOfDecoding(int number, const CodePage& page) {
  Sum sum;
  for (unsigned first = 0; first < 0x100; ++first) {
    for (unsigned second = 0; second < 0x100; ++second) {
      const std::string pair{static_cast<char>(first), static_cast<char>(second)};
      const std::u16string units = page.FromBytes(pair);
      if (IsLeftOpen(number, units.front())) continue;
      // What stands for one of those left open, or for none.
      if (units.front() == u'?' && first >= 0x80) continue;
      sum.Add(units + u';');
    }
  }
  return sum.Value();
}

struct KnownPage {
  int number;
  std::uint32_t encoding;
  std::uint32_t decoding;
};

class CodePages : public ::testing::TestWithParam<KnownPage> {};

TEST_P(CodePages, HaveTheSystemsTables) {
  const KnownPage& known = GetParam();
  const auto page = MakeExactPage(known.number);
  ASSERT_NE(page, nullptr) << known.number;
  EXPECT_EQ(SumOfEncoding(known.number, *page), known.encoding) << known.number;
  EXPECT_EQ(SumOfDecoding(known.number, *page), known.decoding) << known.number;
}

INSTANTIATE_TEST_SUITE_P(
    All, CodePages,
    ::testing::Values(
        KnownPage{437, 0x0EA700CD, 0xE6389359}, KnownPage{737, 0x4FF15CC5, 0x51CA3305},
        KnownPage{775, 0xEAC65A15, 0x4B2818D5}, KnownPage{850, 0x073F2F55, 0xFACA0365},
        KnownPage{852, 0xABD43715, 0x4CF400B5}, KnownPage{855, 0xA7EAF6B1, 0x99D6025D},
        KnownPage{857, 0x52FA87BD, 0x76198BD1}, KnownPage{860, 0xCEFD2CD1, 0xDAC88C41},
        KnownPage{861, 0xA49636D1, 0x2E9D72E9}, KnownPage{862, 0xD0463031, 0x60B53861},
        KnownPage{863, 0xCDD9BB75, 0xA81D3871}, KnownPage{864, 0x91C30CF5, 0xE8DDDCA9},
        KnownPage{865, 0xA7726419, 0x1058DF71}, KnownPage{866, 0x464078C5, 0x65C87D75},
        KnownPage{869, 0xBEB8EB39, 0x4771CF41}, KnownPage{874, 0x50666385, 0xA01027D9},
        KnownPage{932, 0x9DD7C56E, 0x855D13A0}, KnownPage{936, 0x93FE121F, 0xD87E3C0B},
        KnownPage{949, 0xB4837F71, 0x6C54F815}, KnownPage{950, 0xFB2A9949, 0x1D40E485},
        KnownPage{1250, 0x64DDA5A9, 0x512DCA35}, KnownPage{1251, 0x14A3D865, 0xD9322325},
        KnownPage{1252, 0x4020EA19, 0x01636E29}, KnownPage{1253, 0xEA70357D, 0x61DAF65D},
        KnownPage{1254, 0x900FCB09, 0x87B76681}, KnownPage{1255, 0x5F44B105, 0xED215B21},
        KnownPage{1256, 0x9B01D4D1, 0xA9E00E85}, KnownPage{1257, 0x5FAEA539, 0x5FAA6055},
        KnownPage{1258, 0x1B27F109, 0x2E987E3D}));

}  // namespace
}  // namespace quorvane::testing
