#include "web/reply_text.h"

#include <array>

#include "runtime/ascii.h"

namespace quorvane {
namespace {

// Small enough for the heap to hand out again what earlier replies gave back.
constexpr std::size_t kPieceSize = 32768;

// In steps that stay in the processor's nearest cache.
void AppendWidened(std::string_view ascii, std::u16string& text) {
  std::array<char16_t, 2048> step;  // NOLINT(cppcoreguidelines-pro-type-member-init)
  while (!ascii.empty()) {
    const std::string_view now = ascii.substr(0, step.size());
    WidenAscii(now, step.data());
    text.append(step.data(), now.size());
    ascii.remove_prefix(now.size());
  }
}

}  // namespace

template <class Characters>
void ReplyText::AppendTo(Characters Piece::*kind,
                         std::basic_string_view<typename Characters::value_type> characters) {
  constexpr std::size_t kLength = kPieceSize / sizeof(typename Characters::value_type);
  const bool fits = !pieces_.empty() && !(pieces_.back().*kind).empty() &&
                    (pieces_.back().*kind).size() + characters.size() <= kLength;
  if (!fits) {
    const bool is_first = pieces_.empty();
    pieces_.emplace_back();
    // The first one grows as it must: most replies are short.
    if (!is_first) (pieces_.back().*kind).reserve(kLength);
  }
  (pieces_.back().*kind).append(characters);
}

void ReplyText::Append(std::u16string_view characters) { AppendTo(&Piece::others, characters); }

void ReplyText::AppendAscii(std::string_view characters) { AppendTo(&Piece::ascii, characters); }

std::u16string ReplyText::Take() {
  std::size_t length = 0;
  for (const Piece& piece : pieces_) length += piece.ascii.size() + piece.others.size();
  std::u16string all;
  all.reserve(length);
  for (; !pieces_.empty(); pieces_.pop_front()) {
    AppendWidened(pieces_.front().ascii, all);
    all.append(pieces_.front().others);
  }
  return all;
}

}  // namespace quorvane
