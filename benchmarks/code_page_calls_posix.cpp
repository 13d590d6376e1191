#include "benchmarks/code_page_calls.h"
#include "platform/system_code_page.h"

namespace quorvane::benchmarks {

std::uint32_t CallCodePageForEachCharacter(const std::u16string& text) {
  const CodePage& page = systemCodePage();
  std::uint32_t sum = 0;
  for (const char16_t& character : text)
    sum += static_cast<unsigned char>(page.ToBytes({&character, 1})[0]);
  return sum;
}

}  // namespace quorvane::benchmarks
