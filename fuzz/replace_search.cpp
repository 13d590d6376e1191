// Replacing and searching in texts, and numbers to the base 36.
//
// Oracle: the longest form of each search, of the tests of text/, which begins anew at every place
// and rebuilds the whole text; of a number its digits, read back.

#include "fuzz/target.h"
#include "platform/collation.h"
#include "tests/support/fake_collation.h"
#include "tests/text/literal_string_helpers.h"
#include "text/string_helpers.h"

namespace quorvane::fuzz::replace_search {

using testing::FakeCollation;

// Few characters, so that one text is found in the other: two, so that it begins again and again
// before it is found, or several, of which a collation passes over one.
std::u16string FewCharacters(Input& input, std::size_t count, bool only_two) {
  constexpr std::u16string_view kFew = u"aAbB \u00AD\u00DFss";
  std::u16string characters = input.Characters(count);
  for (char16_t& c : characters) {
    if (only_two) {
      c = c % 2 == 0 ? u'a' : u'b';
    } else if (c < 0x20) {
      c = kFew[c % kFew.size()];
    }
  }
  return characters;
}

void CheckBase36(std::int32_t number) {
  const std::u16string digits = NumberToBase36(number).Characters();
  std::int32_t value = 0;
  for (const char16_t c : digits) {
    const bool is_digit = c >= u'0' && c <= u'9';
    Require(is_digit || (c >= u'A' && c <= u'Z'), "a digit to the base 36");
    value = value * 36 + (is_digit ? c - u'0' : c - u'A' + 10);
  }
  const bool is_in_range = number >= 1 && number <= 32767;
  Require(value == (is_in_range ? number : 0) && digits.empty() != is_in_range &&
              !digits.starts_with(u'0'),
          "NumberToBase36()");
}

void Run(Input input) {
  static const FakeCollation kPlain(FakeCollation::Plain::kYes);
  static const FakeCollation kNotPlain(FakeCollation::Plain::kNo);
  const std::uint8_t choice = input.Byte(31);
  // The system's own is many times as slow.
  const Collation& collation = choice == 31      ? systemCollation()
                               : choice % 2 == 0 ? static_cast<const Collation&>(kPlain)
                                                 : kNotPlain;
  CheckBase36(choice == 30 ? input.Number32() : input.Number16());
  const bool only_two = choice % 4 >= 2;
  const Text find = FewCharacters(input, input.Byte(15), only_two);
  const Text replacement = FewCharacters(input, input.Byte(15), only_two);
  const Text text = FewCharacters(input, SIZE_MAX, only_two);
  Require(ReplaceAll(text, find, replacement, collation) ==
              testing::LiteralReplaceAll(text, find, replacement, collation),
          "ReplaceAll()");
  Require(
      LastPosition(text, find, collation) == testing::LiteralLastPosition(text, find, collation),
      "LastPosition()");
  Require(IsEmptyText(find, collation).IsTrue() == collation.AreEqual(find.Characters(), u""),
          "IsEmptyText()");
}

const Registered kTarget("replace_search", Run);

}  // namespace quorvane::fuzz::replace_search
