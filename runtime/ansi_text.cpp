#include "runtime/ansi_text.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "runtime/ascii.h"

namespace quorvane {

// Most texts are short and ASCII, on the way out and back: they are narrowed and widened here, and
// the code page is not asked.

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): the short room is filled as far as used
AnsiCopy::AnsiCopy(Text& original, const CodePage& code_page)
    : original_(original), code_page_(code_page), count_(original.Characters().size()) {
  const std::u16string_view characters = original.Characters();
  if (IsAscii(characters)) {
    bytes_ = Room(count_ + 1);
    NarrowAscii(characters, bytes_);
    bytes_[count_] = '\0';
    return;
  }
  const std::string converted = code_page.ToBytes(characters);
  count_ = converted.size();
  const std::size_t size = std::max(count_, characters.size()) + 1;
  bytes_ = Room(size);
  std::fill(std::ranges::copy(converted, bytes_).out, bytes_ + size, '\0');
}

char* AnsiCopy::Room(std::size_t size) {
  if (size <= short_.size()) return short_.data();
  long_.resize(size);
  return long_.data();
}

void AnsiCopy::CopyBack() const {
  if (original_.IsAbsent()) return;
  const std::string_view bytes(bytes_, count_);
  if (!IsAscii(bytes)) {
    original_ = Text(code_page_.FromBytes(bytes));
    return;
  }
  std::u16string& characters = original_.Edit();
  characters.resize(count_);
  WidenAscii(bytes, characters.data());
}

}  // namespace quorvane
