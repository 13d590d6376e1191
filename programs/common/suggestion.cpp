#include "programs/common/suggestion.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace quorvane::programs {
namespace {

// The count of single changes that lead from one word to the other; two letters that changed places
// are one change.
std::size_t Distance(std::string_view from, std::string_view to) {
  std::vector<std::size_t> before_last;
  std::vector<std::size_t> last(to.size() + 1);
  std::iota(last.begin(), last.end(), std::size_t{0});
  for (std::size_t i = 1; i <= from.size(); ++i) {
    std::vector<std::size_t> row(to.size() + 1, i);
    for (std::size_t j = 1; j <= to.size(); ++j) {
      const std::size_t changed = last[j - 1] + (from[i - 1] == to[j - 1] ? 0 : 1);
      row[j] = std::min({changed, last[j] + 1, row[j - 1] + 1});
      const bool swapped = i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1];
      if (swapped) row[j] = std::min(row[j], before_last[j - 2] + 1);
    }
    before_last = std::move(last);
    last = std::move(row);
  }
  return last.back();
}

}  // namespace

std::string Suggestion(std::string_view word, std::span<const std::string> names) {
  const auto distance = [word](const std::string& name) {
    // The start of a name is as good as a slip.
    return word.size() > 2 && name.starts_with(word) ? 1 : Distance(word, name);
  };
  const auto nearest = std::ranges::min_element(names, {}, distance);
  // More than a third of the letters wrong is another word.
  if (nearest == names.end() || distance(*nearest) > std::max<std::size_t>(1, word.size() / 3)) {
    return "";
  }
  return "; did you mean '" + *nearest + "'?";
}

}  // namespace quorvane::programs
