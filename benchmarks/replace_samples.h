#pragma once

#include <string>

namespace quorvane::benchmarks {

/// One piece of work for replace-all: a piece that is repeated up to the length, what to find in it
/// and what to put there.
struct Replacing {
  std::size_t length;
  std::u16string piece;
  std::u16string find;
  std::u16string replacement;

  [[nodiscard]] std::u16string Sample() const {
    std::u16string text;
    while (text.size() < length) text += piece.substr(0, length - text.size());
    return text;
  }
};

inline constexpr std::size_t kLongest = 32766;

inline const Replacing kEachCharacter{kLongest, u"a", u"A", u"b"};
inline const Replacing kHalf{kLongest / 2, u"a", u"A", u"b"};
inline const Replacing kEachThird{kLongest - 3, u"abc", u"BC", u"x"};
// Grows to twice its length: the last match stands just below the limit.
inline const Replacing kGrowing{kLongest / 2, u"abc", u"B", u"wxyz"};
inline const Replacing kEachTenth{kLongest - 10, u"The quick ", u"QUI", u"slo"};
// Few enough that rebuilding the text is no longer dear.
inline const Replacing kEachHundredth{kLongest - 100, u"The quick " + std::u16string(90, u'-'),
                                      u"QUI", u"slo"};
inline const Replacing kNone{kLongest, u"The quick brown fox ", u"lazy", u"dog"};
inline const Replacing kOtherScript{kLongest, u"\u0436\u0437\u0438\u0439", u"\u0417\u0418", u"-"};

}  // namespace quorvane::benchmarks
