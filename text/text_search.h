#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/collation.h"

namespace quorvane {

/// Finds one text, the needle, in another by text comparison: the first place, from a given one on,
/// where a stretch of exactly the needle's length equals it. Places count from 0.
///
/// Which way it compares is settled once. Where both texts are plain ASCII, U+0020 to U+007E alone,
/// and the collation folds that plainly, it compares by itself, in time linear in the text whatever
/// the two hold. Anywhere else it asks the collation at each place: outside of plain ASCII
/// characters are passed over, joined or equal to several others, and no shorter test tells the
/// answer.
class TextSearch {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);  ///< no place

  /// All three must outlive the search. Raises overflow (6) for a needle of more than 32767
  /// characters, unless one of the texts is empty.
  TextSearch(std::u16string_view text, std::u16string_view needle, const Collation& collation);

  /// Whether one of the two texts equals the empty one; there is nothing to find then.
  [[nodiscard]] bool IsEmpty() const { return is_empty_; }
  /// How many characters the needle has; 0 for an empty search.
  [[nodiscard]] std::int16_t Length() const { return length_; }
  /// The first place at or behind `from`, or kNone. Not to be asked of an empty search.
  [[nodiscard]] std::size_t Find(std::size_t from) const {
    return is_plain_ ? FindPlain(from) : FindCollated(from);
  }

 private:
  [[nodiscard]] bool EqualsEmpty(std::u16string_view text) const;
  [[nodiscard]] std::size_t FindPlain(std::size_t from) const;
  [[nodiscard]] std::size_t FindCollated(std::size_t from) const;

  std::u16string_view text_;
  std::u16string_view needle_;
  const Collation& collation_;
  bool is_plain_;
  bool is_empty_;
  std::int16_t length_ = 0;
  // Only for a plain search: the needle in lower case, and how many of its characters still
  // match when the one at an index does not.
  std::u16string lower_needle_;
  std::vector<std::uint16_t> fallback_;
};

}  // namespace quorvane
