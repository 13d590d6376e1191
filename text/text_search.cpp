#include "text/text_search.h"

#include <algorithm>

#include "runtime/integers.h"

namespace quorvane {
namespace {

bool IsCapital(char16_t c) { return c >= u'A' && c <= u'Z'; }
char16_t Small(char16_t c) { return IsCapital(c) ? static_cast<char16_t>(c + (u'a' - u'A')) : c; }

char16_t Capital(char16_t c) {
  const bool is_small = c >= u'a' && c <= u'z';
  return is_small ? static_cast<char16_t>(c - (u'a' - u'A')) : c;
}

std::u16string InSmallLetters(std::u16string_view plain_text) {
  std::u16string small(plain_text);
  std::ranges::transform(small, small.begin(), Small);
  return small;
}

// The failure function of Knuth, Morris and Pratt: at each index the length of the longest proper
// prefix that is also a suffix of what stands in front of that index.
std::vector<std::uint16_t> FallbackOf(const std::u16string& sought) {
  std::vector<std::uint16_t> fallback(sought.size(), 0);
  std::uint16_t matched = 0;
  for (std::size_t i = 1; i + 1 < sought.size(); ++i) {
    while (matched > 0 && sought[i] != sought[matched]) matched = fallback[matched];
    if (sought[i] == sought[matched]) ++matched;
    fallback[i + 1] = matched;
  }
  return fallback;
}

// Without a branch in the loop, so that it goes many characters at a time.
bool IsPlainAscii(std::u16string_view text) {
  unsigned beyond = 0;
  for (const char16_t c : text) beyond |= static_cast<unsigned>(c - 0x20U > 0x7EU - 0x20U);
  return beyond == 0;
}

}  // namespace

TextSearch::TextSearch(std::u16string_view text, std::u16string_view sought,
                       const Collation& collation)
    : text_(text),
      sought_(sought),
      collation_(collation),
      is_plain_(collation.FoldsAsciiPlainly() && IsPlainAscii(sought) && IsPlainAscii(text)),
      is_empty_(EqualsEmpty(text) || EqualsEmpty(sought)) {
  if (is_empty_) return;
  length_ = NarrowTo16(sought.size());
  if (!is_plain_) return;
  small_sought_ = InSmallLetters(sought);
  fallback_ = FallbackOf(small_sought_);
}

bool TextSearch::EqualsEmpty(std::u16string_view text) const {
  return is_plain_ ? text.empty() : collation_.AreEqual(text, {});
}

// The next place, from one on, that may begin an occurrence: it holds the first character sought.
std::size_t TextSearch::FindFirst(std::size_t from) const {
  const char16_t small = small_sought_.front();
  const char16_t capital = Capital(small);
  std::size_t i = from;
  while (i < text_.size() && text_[i] != small && text_[i] != capital) ++i;
  return i;
}

std::size_t TextSearch::FindPlain(std::size_t from) const {
  std::size_t matched = 0;
  for (std::size_t i = from; i < text_.size(); ++i) {
    if (matched == 0) i = FindFirst(i);
    if (i == text_.size()) break;
    const char16_t c = Small(text_[i]);
    while (matched > 0 && c != small_sought_[matched]) matched = fallback_[matched];
    if (c == small_sought_[matched]) ++matched;
    if (matched == small_sought_.size()) return i + 1 - matched;
  }
  return kNone;
}

std::size_t TextSearch::FindCollated(std::size_t from) const {
  for (std::size_t i = from; i + sought_.size() <= text_.size(); ++i) {
    if (collation_.AreEqual(text_.substr(i, sought_.size()), sought_)) return i;
  }
  return kNone;
}

}  // namespace quorvane
