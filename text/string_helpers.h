#pragma once

#include <cstdint>

#include "platform/collation.h"
#include "platform/oleaut32.h"
#include "platform/short_date.h"
#include "runtime/boolean16.h"
#include "runtime/text.h"

namespace quorvane {

// Five functions on texts, without state. Positions count 16-bit characters from 1, and 0 means not
// found. "Text comparison" is the collation's idea of equal texts, which leaves case aside; "binary
// comparison" is that of the 16-bit characters.

/// True for an absent text and for every text that equals the empty one by text comparison, so also
/// for one that holds nothing but characters the collation passes over. Never fails: where the
/// collation does, for want of memory, a text without characters is the empty one.
[[nodiscard]] Boolean16 IsEmptyText(const Text& text,
                                    const Collation& collation = systemCollation()) noexcept;

/// The position of the last occurrence of `find`, by binary comparison; occurrences may overlap. 0
/// when there is none, and for an empty `find` in the sense of IsEmptyText(). Never fails.
[[nodiscard]] std::int32_t LastPosition(const Text& text, const Text& find,
                                        const Collation& collation = systemCollation());

/// The text with every occurrence of `find`, from left to right and by text comparison, replaced by
/// `replacement` as it stands. What is put in is not searched again.
///
/// An occurrence is a stretch of as many characters as `find` has that equals it, and just that
/// many are taken out. An empty `text` or `find`, by text comparison, gives the empty text.
///
/// Kept: a text comes out empty, and not unchanged, when `find` is empty; a caller that may have
/// nothing to find must test for that. Pinned by ReplaceAll.GivesTheEmptyTextForAnEmptyFind.
///
/// Kept: whatever the error, the text comes back as it came in, without the replacements made
/// before the error. Overflow is the one to expect: a `find` of more than 32767 characters, an
/// occurrence behind position 32767 of the text as replaced so far, or one whose position plus the
/// length of `find` exceeds 32767. A caller never sees a text replaced in part. Pinned by
/// ReplaceAll.GivesTheTextBackWhenAPositionExceedsSixteenBits.
///
/// The text is taken over, not copied, so that it is there to be given back when memory runs out.
[[nodiscard]] Text ReplaceAll(Text text, const Text& find, const Text& replacement,
                              const Collation& collation = systemCollation());

/// The date yyyymmdd that stands behind the first five characters, in the short form of the system
/// locale. Those five are not read, nor is what follows position 13.
///
/// The year is the first four characters of the piece, the month its characters 5 and 6, the day
/// its last two, each by the usual rules for numeric text, see ToInteger16(). A month or a day out
/// of range carries over into the neighbouring months and years; years 0 to 29 are 2000 to 2029 and
/// years 30 to 99 are 1930 to 1999, as everywhere in oleaut.
///
/// Raises type mismatch (13) when year, month or day is not numeric, overflow (6) when one exceeds
/// 16 bits, invalid procedure call (5) when the day lies outside the years 100 to 9999, which are
/// those of an automation date.
///
/// Kept: the day is counted from the end, so month and day share a character when the piece has
/// only seven. Pinned by PackedDateToShortDate.SharesACharacterBetweenMonthAndDay.
[[nodiscard]] Text PackedDateToShortDate(const Text& packed,
                                         const ShortDate& form = systemShortDate(),
                                         Oleaut32& oleaut = oleaut32());

/// A value from 1 to 32767 in the digits 0 to 9 and A to Z, the most significant first: at most
/// PA7.
///
/// Kept: 0, a negative value and one above 32767 give the empty text, never "0"; a caller
/// cannot tell them apart. Pinned by NumberToBase36.GivesTheEmptyTextOutsideItsRange.
[[nodiscard]] Text NumberToBase36(const std::int32_t& value);

}  // namespace quorvane
