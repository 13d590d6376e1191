#include "text/text_search.h"

#include <algorithm>

#include "runtime/integers.h"
#include "text/character_scan.h"

namespace quorvane {
namespace {

bool IsUpper(char16_t c) { return c >= u'A' && c <= u'Z'; }
char16_t ToLower(char16_t c) { return IsUpper(c) ? static_cast<char16_t>(c + (u'a' - u'A')) : c; }

char16_t ToUpper(char16_t c) {
  const bool is_lower = c >= u'a' && c <= u'z';
  return is_lower ? static_cast<char16_t>(c - (u'a' - u'A')) : c;
}

std::u16string InLowerCase(std::u16string_view plain_text) {
  std::u16string lower(plain_text);
  std::ranges::transform(lower, lower.begin(), ToLower);
  return lower;
}

// The failure function of Knuth, Morris and Pratt: at each index the length of the longest proper
// prefix that is also a suffix of what stands in front of that index.
std::vector<std::uint16_t> FallbackOf(const std::u16string& needle) {
  std::vector<std::uint16_t> fallback(needle.size(), 0);
  std::uint16_t matched = 0;
  for (std::size_t i = 1; i + 1 < needle.size(); ++i) {
    while (matched > 0 && needle[i] != needle[matched]) matched = fallback[matched];
    if (needle[i] == needle[matched]) ++matched;
    fallback[i + 1] = matched;
  }
  return fallback;
}

}  // namespace

TextSearch::TextSearch(std::u16string_view text, std::u16string_view needle,
                       const Collation& collation)
    : text_(text),
      needle_(needle),
      collation_(collation),
      is_plain_(collation.FoldsAsciiPlainly() && IsPlainAscii(needle) && IsPlainAscii(text)),
      is_empty_(EqualsEmpty(text) || EqualsEmpty(needle)) {
  if (is_empty_) return;
  length_ = NarrowTo16(needle.size());
  if (!is_plain_) return;
  lower_needle_ = InLowerCase(needle);
  fallback_ = FallbackOf(lower_needle_);
}

bool TextSearch::EqualsEmpty(std::u16string_view text) const {
  return is_plain_ ? text.empty() : collation_.AreEqual(text, {});
}

std::size_t TextSearch::FindPlain(std::size_t from) const {
  const char16_t lower = lower_needle_.front();
  const char16_t upper = ToUpper(lower);
  std::size_t matched = 0;
  for (std::size_t i = from; i < text_.size(); ++i) {
    if (matched == 0) i = FindEitherCase(text_, i, lower, upper);
    if (i == text_.size()) break;
    const char16_t c = ToLower(text_[i]);
    while (matched > 0 && c != lower_needle_[matched]) matched = fallback_[matched];
    if (c == lower_needle_[matched]) ++matched;
    if (matched == lower_needle_.size()) return i + 1 - matched;
  }
  return kNone;
}

std::size_t TextSearch::FindCollated(std::size_t from) const {
  for (std::size_t i = from; i + needle_.size() <= text_.size(); ++i) {
    if (collation_.AreEqual(text_.substr(i, needle_.size()), needle_)) return i;
  }
  return kNone;
}

}  // namespace quorvane
