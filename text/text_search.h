#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/collation.h"

namespace quorvane {

/// Whether the collation leaves it to the caller to compare this text: it is plain ASCII, U+0020 to
/// U+007E alone, and the collation folds that plainly.
[[nodiscard]] bool IsPlain(std::u16string_view text, const Collation& collation);

/// Finds one text in another by text comparison: the first place, from a given one on, where a
/// stretch of exactly the sought text's length equals it.
///
/// Both texts must outlive the search; the sought one must not be empty and has at most 32767
/// characters. Places count from 0.
///
/// Where both are plain, see IsPlain(), the search compares by itself, in time linear in the text
/// whatever the two hold. Anywhere else it asks the collation at each place: outside of plain ASCII
/// characters are passed over, joined or equal to several others, and no shorter test foretells the
/// answer.
class TextSearch {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);  ///< no place

  /// A search that compares by itself: both texts must be plain.
  TextSearch(std::u16string_view text, std::u16string_view sought);
  /// A search that asks the collation.
  TextSearch(std::u16string_view text, std::u16string_view sought, const Collation& collation);

  /// The first place at or behind `from`, or kNone.
  [[nodiscard]] std::size_t Find(std::size_t from) const {
    return collation_ == nullptr ? FindPlain(from) : FindCollated(from);
  }

 private:
  [[nodiscard]] std::size_t FindFirst(std::size_t from) const;
  [[nodiscard]] std::size_t FindPlain(std::size_t from) const;
  [[nodiscard]] std::size_t FindCollated(std::size_t from) const;

  std::u16string_view text_;
  std::u16string_view sought_;
  const Collation* collation_ = nullptr;
  // Only for a plain search: the sought text in small letters, and how many of its characters still
  // match when the one at an index does not.
  std::u16string small_sought_;
  std::vector<std::uint16_t> fallback_;
};

}  // namespace quorvane
