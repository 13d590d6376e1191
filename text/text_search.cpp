#include "text/text_search.h"

#include <algorithm>

namespace quorvane {
namespace {

std::string Small(std::u16string_view plain_text) {
  std::string small(plain_text.size(), '\0');
  std::ranges::transform(plain_text, small.begin(), [](char16_t c) {
    const bool is_capital = c >= u'A' && c <= u'Z';
    return static_cast<char>(is_capital ? c + (u'a' - u'A') : c);
  });
  return small;
}

// The failure function of Knuth, Morris and Pratt: at each index the length of the longest proper
// prefix that is also a suffix of what stands in front of that index.
std::vector<std::uint16_t> FallbackOf(const std::string& sought) {
  std::vector<std::uint16_t> fallback(sought.size(), 0);
  std::uint16_t matched = 0;
  for (std::size_t i = 1; i + 1 < sought.size(); ++i) {
    while (matched > 0 && sought[i] != sought[matched]) matched = fallback[matched];
    if (sought[i] == sought[matched]) ++matched;
    fallback[i + 1] = matched;
  }
  return fallback;
}

}  // namespace

bool IsPlain(std::u16string_view text, const Collation& collation) {
  if (!collation.FoldsAsciiPlainly()) return false;
  // Without a branch in the loop, so that it goes many characters at a time.
  unsigned beyond = 0;
  for (const char16_t c : text) beyond |= static_cast<unsigned>(c - 0x20U > 0x7EU - 0x20U);
  return beyond == 0;
}

TextSearch::TextSearch(std::u16string_view text, std::u16string_view sought)
    : text_(text),
      sought_(sought),
      small_text_(Small(text)),
      small_sought_(Small(sought)),
      fallback_(FallbackOf(small_sought_)) {}

TextSearch::TextSearch(std::u16string_view text, std::u16string_view sought,
                       const Collation& collation)
    : text_(text), sought_(sought), collation_(&collation) {}

std::size_t TextSearch::FindPlain(std::size_t from) const {
  const char first = small_sought_.front();
  std::size_t matched = 0;
  for (std::size_t i = from; i < small_text_.size(); ++i) {
    if (matched == 0 && small_text_[i] != first) {
      i = small_text_.find(first, i);
      if (i == std::string::npos) break;
    }
    while (matched > 0 && small_text_[i] != small_sought_[matched]) matched = fallback_[matched];
    if (small_text_[i] == small_sought_[matched]) ++matched;
    if (matched == small_sought_.size()) return i + 1 - matched;
  }
  return kNone;
}

std::size_t TextSearch::FindCollated(std::size_t from) const {
  for (std::size_t i = from; i + sought_.size() <= text_.size(); ++i) {
    if (collation_->AreEqual(text_.substr(i, sought_.size()), sought_)) return i;
  }
  return kNone;
}

}  // namespace quorvane
