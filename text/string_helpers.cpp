#include "text/string_helpers.h"

#include <chrono>
#include <string>
#include <string_view>

#include "platform/conversions.h"
#include "runtime/ignored_result.h"
#include "runtime/integers.h"
#include "text/text_search.h"

namespace quorvane {
namespace {

// The text as replaced so far is `done` followed by the input from `next` on. A search never looks
// behind its start and never into what was put in, so searching the input instead of a rebuilt text
// finds the same occurrences; their positions in the rebuilt text, which the limits go by, are
// those in the input plus what `done` has grown by.
Text Replaced(const std::u16string& text, std::size_t found, const TextSearch& search,
              const Text& replacement) {
  const std::int32_t replacement_length = replacement.Length();
  std::u16string done;
  done.reserve(text.size());
  std::size_t next = 0;
  for (; found != TextSearch::kNone; found = search.Find(next)) {
    const std::int16_t position = NarrowTo16(done.size() + (found - next) + 1);
    IgnoreResult(CheckedAdd(position, search.Length()));
    IgnoreResult(CheckedAdd<std::int32_t>(position, replacement_length));
    done.append(text, next, found - next).append(replacement.Characters());
    next = found + static_cast<std::size_t>(search.Length());
  }
  return Text(done.append(text, next));
}

// The characters from a 1-based position on, at most `count`; none behind the end.
Text PieceOf(const Text& text, std::size_t position, std::size_t count) {
  const std::u16string& characters = text.Characters();
  if (position > characters.size()) return u"";
  return Text(characters.substr(position - 1, count));
}

Text LastCharacters(const Text& text, std::size_t count) {
  const std::size_t length = text.Characters().size();
  return length <= count ? text : Text(text.Characters().substr(length - count));
}

std::int32_t FullYear(std::int32_t year) {
  constexpr std::int32_t kLastYearOfTwoDigits = 2029;
  if (year < 0 || year > 99) return year;
  return year <= kLastYearOfTwoDigits % 100 ? 2000 + year : 1900 + year;
}

CalendarDay CarriedDay(std::int16_t year, std::int16_t month, std::int16_t day) {
  namespace chrono = std::chrono;
  // No day can carry over more than 32768 days, so what begins outside these years ends outside
  // those of a date.
  constexpr std::int32_t kFirst = 0;
  constexpr std::int32_t kLast = 10100;
  const std::int32_t months = FullYear(year) * 12 + month - 1;
  if (months < kFirst * 12 || months >= kLast * 12) Raise(ErrorNumber::kInvalidProcedureCall);
  const chrono::sys_days first_of_month =
      chrono::year(months / 12) / chrono::month(static_cast<unsigned>(months % 12 + 1)) / 1;
  const chrono::year_month_day date(first_of_month + chrono::days(day - 1));
  const std::int32_t carried_year = static_cast<int>(date.year());
  if (carried_year < 100 || carried_year > 9999) Raise(ErrorNumber::kInvalidProcedureCall);
  return {carried_year, static_cast<std::int32_t>(static_cast<unsigned>(date.month())),
          static_cast<std::int32_t>(static_cast<unsigned>(date.day()))};
}

}  // namespace

Boolean16 IsEmptyText(const Text& text, const Collation& collation) noexcept {
  try {
    return ToBoolean16(collation.AreEqual(text.Characters(), {}));
  } catch (...) {  // the collation cannot tell; what has no characters is empty in every one
    return ToBoolean16(text.IsEmpty());
  }
}

std::int32_t LastPosition(const Text& text, const Text& find, const Collation& collation) {
  if (IsEmptyText(find, collation).IsTrue()) return 0;
  // The search backwards meets first what the search from each place, last place first, would find.
  const std::size_t last = text.Characters().rfind(find.Characters());
  return last == std::u16string::npos ? 0 : NarrowTo32(last + 1);
}

Text ReplaceAll(Text text, const Text& find, const Text& replacement, const Collation& collation) {
  try {
    const TextSearch search(text.Characters(), find.Characters(), collation);
    if (search.IsEmpty()) return u"";
    const std::size_t first = search.Find(0);
    if (first != TextSearch::kNone) return Replaced(text.Characters(), first, search, replacement);
  } catch (...) {  // NOLINT(bugprone-empty-catch): the text is the result
  }
  return text;  // moved: a copy could fail itself
}

Text PackedDateToShortDate(const Text& packed, const ShortDate& form, Oleaut32& oleaut) {
  const Text date = PieceOf(packed, 6, 8);
  const std::int16_t year = ToInteger16(PieceOf(date, 1, 4), oleaut);
  const std::int16_t month = ToInteger16(PieceOf(date, 5, 2), oleaut);
  const std::int16_t day = ToInteger16(LastCharacters(date, 2), oleaut);
  return form.Format(CarriedDay(year, month, day));
}

Text NumberToBase36(const std::int32_t& value) {
  constexpr std::u16string_view kDigits = u"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  constexpr std::int16_t kBase = 36;
  try {
    std::u16string built;
    auto number = NarrowTo16(value);
    while (number > 0) {
      const auto quotient = static_cast<std::int16_t>(number / kBase);
      const std::int16_t digit = CheckedSubtract(number, CheckedMultiply(quotient, kBase));
      built.insert(built.begin(), kDigits[static_cast<std::size_t>(digit)]);
      number = quotient;
    }
    return Text(std::move(built));
  } catch (...) {
    return u"";
  }
}

}  // namespace quorvane
