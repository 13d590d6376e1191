#include <windows.h>

#include "benchmarks/code_page_calls.h"

namespace quorvane::benchmarks {

std::uint32_t CallCodePageForEachCharacter(const std::u16string& text) {
  std::uint32_t sum = 0;
  for (const char16_t character : text) {
    char bytes[4] = {};
    const auto unit = static_cast<wchar_t>(character);
    ::WideCharToMultiByte(CP_ACP, 0, &unit, 1, bytes, sizeof bytes, nullptr, nullptr);
    sum += static_cast<unsigned char>(bytes[0]);
  }
  return sum;
}

}  // namespace quorvane::benchmarks
