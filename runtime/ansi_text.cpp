#include "runtime/ansi_text.h"

#include <algorithm>
#include <string_view>

namespace quorvane {

AnsiCopy::AnsiCopy(Text& original, const CodePage& code_page)
    : original_(original),
      code_page_(code_page),
      bytes_(code_page.ToBytes(original.Characters())),
      count_(bytes_.size()) {
  bytes_.resize(std::max(count_, original.Characters().size()) + 1, '\0');
}

void AnsiCopy::CopyBack() const {
  if (original_.IsAbsent()) return;
  original_ = Text(code_page_.FromBytes(std::string_view(bytes_).substr(0, count_)));
}

}  // namespace quorvane
