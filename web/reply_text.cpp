#include "web/reply_text.h"

#include <utility>

namespace quorvane {
namespace {

// Small enough for the heap to hand out again what earlier replies gave back.
constexpr std::size_t kPieceLength = 16384;

}  // namespace

void ReplyText::Append(std::u16string_view characters) {
  const bool fits = !pieces_.empty() && pieces_.back().size() + characters.size() <= kPieceLength;
  if (!fits) {
    const bool is_first = pieces_.empty();
    pieces_.emplace_back();
    // The first one grows as it must: most replies are short.
    if (!is_first) pieces_.back().reserve(kPieceLength);
  }
  pieces_.back().append(characters);
}

std::u16string ReplyText::Take() {
  if (pieces_.size() == 1) {
    std::u16string only = std::move(pieces_.front());
    pieces_.clear();
    return only;
  }
  std::size_t length = 0;
  for (const std::u16string& piece : pieces_) length += piece.size();
  std::u16string all;
  all.reserve(length);
  for (; !pieces_.empty(); pieces_.pop_front()) all.append(pieces_.front());
  return all;
}

}  // namespace quorvane
