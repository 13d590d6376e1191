#include "runtime/ansi_text.h"

namespace quorvane {

AnsiCopy::AnsiCopy(Text& original, const CodePage& code_page)
    : original_(original),
      code_page_(code_page),
      bytes_(code_page.ToBytes(original.Characters())) {}

void AnsiCopy::CopyBack() const {
  if (original_.IsAbsent()) return;
  original_ = Text(code_page_.FromBytes(bytes_));
}

}  // namespace quorvane
