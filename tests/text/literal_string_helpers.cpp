#include "tests/text/literal_string_helpers.h"

#include <string>
#include <string_view>

namespace quorvane::testing {
namespace {

struct Overflow {};

std::int64_t To16(std::int64_t value) {
  if (value < -32768 || value > 32767) throw Overflow{};
  return value;
}

// 1-based; 0 when nothing is found. A search from behind the end finds nothing.
template <class Equal>
std::int64_t SearchFrom(std::int64_t from, std::u16string_view text, std::u16string_view find,
                        Equal equal) {
  const auto length = static_cast<std::int64_t>(find.size());
  const auto end = static_cast<std::int64_t>(text.size());
  for (std::int64_t position = from; position - 1 + length <= end; ++position) {
    if (equal(text.substr(static_cast<std::size_t>(position - 1), find.size()), find))
      return position;
  }
  return 0;
}

bool SameCharacters(std::u16string_view left, std::u16string_view right) { return left == right; }

}  // namespace

std::int32_t LiteralLastPosition(const Text& text, const Text& find, const Collation& collation) {
  const std::u16string& characters = text.Characters();
  const std::int64_t first = SearchFrom(1, characters, find.Characters(), SameCharacters);
  if (collation.AreEqual(find.Characters(), u"")) return 0;
  if (first == 0) return 0;
  if (characters == find.Characters()) return 1;
  for (auto i = static_cast<std::int64_t>(characters.size()); i >= 1; --i) {
    const std::int64_t found = SearchFrom(i, characters, find.Characters(), SameCharacters);
    if (found > 0) return static_cast<std::int32_t>(found);
  }
  return 0;
}

Text LiteralReplaceAll(const Text& text, const Text& find, const Text& replacement,
                       const Collation& collation) {
  const auto equal = [&](auto left, auto right) { return collation.AreEqual(left, right); };
  const std::u16string& needle = find.Characters();
  if (equal(text.Characters(), u"") || equal(needle, u"")) return u"";
  try {
    const std::int64_t find_length = To16(static_cast<std::int64_t>(needle.size()));
    const auto replacement_length = static_cast<std::int64_t>(replacement.Characters().size());
    std::u16string working = text.Characters();
    std::int64_t position = To16(SearchFrom(1, working, needle, equal));
    while (position >= 1) {
      const std::u16string front = working.substr(0, static_cast<std::size_t>(position - 1));
      const std::int64_t behind = To16(position + find_length);
      const std::u16string rest = working.substr(static_cast<std::size_t>(behind - 1));
      working = front + replacement.Characters() + rest;
      position = To16(SearchFrom(position + replacement_length, working, needle, equal));
    }
    return Text(working);
  } catch (const Overflow&) {
    return text;
  }
}

}  // namespace quorvane::testing
