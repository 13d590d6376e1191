#pragma once

#include <benchmark/benchmark.h>

#include <array>
#include <string>

#include "benchmarks/text_samples.h"

namespace quorvane::benchmarks {

/// One piece of work for replace-all: a piece that is repeated up to the length, what to find in it
/// and what to put there.
struct Replacing {
  int length;
  std::u16string piece;
  std::u16string find;
  std::u16string replacement;

  [[nodiscard]] std::u16string Sample() const { return Repeated(piece, length); }
  [[nodiscard]] Replacing WithLength(int other) const { return {other, piece, find, replacement}; }
};

/// Without a match a text may be longer than a match may lie behind its start.
inline constexpr std::array kLengthsWithoutMatch{
    64, 256, 1024, 4096, 8192, 16384, 32766, 256 << 10, 512 << 10, 768 << 10, 1 << 20};

/// What measures a task, for a sweep over lengths.
template <void measure(benchmark::State&, const Replacing&)>
void OfLength(benchmark::State& state, int length, const Replacing& task) {
  measure(state, task.WithLength(length));
}

inline const Replacing kEachCharacter{kLongest, u"a", u"A", u"b"};
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
