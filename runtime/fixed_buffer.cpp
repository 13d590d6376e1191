#include "runtime/fixed_buffer.h"

#include <algorithm>
#include <string>

#include "runtime/ascii.h"

namespace quorvane {

void CopyBackFixed(std::string_view bytes, std::span<char16_t> characters,
                   const CodePage& code_page) {
  if (IsAscii(bytes)) {
    WidenAscii(bytes, characters.data());
    return;
  }
  const std::u16string converted = code_page.FromBytes(bytes);
  const std::size_t count = std::min(converted.size(), characters.size());
  std::copy_n(converted.begin(), count, characters.begin());
  std::ranges::fill(characters.subspan(count), u' ');
}

}  // namespace quorvane
