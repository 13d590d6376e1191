#include "web/reply_text.h"

#include <array>

#include "runtime/ascii.h"

namespace quorvane {
namespace {

// Small enough for the heap to hand out again what earlier replies gave back.
constexpr std::size_t kPieceSize = 32768;

template <class Pieces, class Characters>
void AppendTo(Pieces& pieces, Characters characters) {
  constexpr std::size_t kLength = kPieceSize / sizeof(typename Characters::value_type);
  if (pieces.empty() || pieces.back().size() + characters.size() > kLength) {
    // The first one grows as it must: most replies are short.
    const bool is_first = pieces.empty();
    pieces.emplace_back();
    if (!is_first) pieces.back().reserve(kLength);
  }
  pieces.back().append(characters);
}

// In steps that stay in the processor's nearest cache, and below a page of the stack.
template <class Take>
void Widen(std::string_view ascii, Take take) {
  std::array<char16_t, 1024> step;  // NOLINT(cppcoreguidelines-pro-type-member-init)
  while (!ascii.empty()) {
    const std::string_view now = ascii.substr(0, step.size());
    WidenAscii(now, step.data());
    take(std::u16string_view(step.data(), now.size()));
    ascii.remove_prefix(now.size());
  }
}

}  // namespace

void ReplyText::Append(std::u16string_view characters) { AppendTo(others_, characters); }

void ReplyText::AppendAscii(std::string_view characters) {
  if (others_.empty()) return AppendTo(ascii_, characters);
  Widen(characters, [this](std::u16string_view wide) { AppendTo(others_, wide); });
}

std::u16string ReplyText::Take() {
  std::size_t length = 0;
  for (const std::string& piece : ascii_) length += piece.size();
  for (const std::u16string& piece : others_) length += piece.size();
  std::u16string all;
  all.reserve(length);
  for (; !ascii_.empty(); ascii_.pop_front())
    Widen(ascii_.front(), [&all](std::u16string_view wide) { all.append(wide); });
  for (; !others_.empty(); others_.pop_front()) all.append(others_.front());
  return all;
}

}  // namespace quorvane
