#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace quorvane {

// ASCII, 0 to 127, is the same in every code page. Most texts around a call to the system hold
// nothing else, so they go to 8 bits and back without asking the page.

/// Whether all units are ASCII.
template <class Unit>
[[nodiscard]] bool IsAscii(std::basic_string_view<Unit> text) {
  static_assert(sizeof(Unit) <= 2);
  // Several units at a time: this stands before and behind every call to the system.
  using Several = std::size_t;
  constexpr auto kAboveAscii =
      static_cast<Several>(sizeof(Unit) == 1 ? 0x8080808080808080 : 0xFF80FF80FF80FF80);
  constexpr std::size_t kUnits = sizeof(Several) / sizeof(Unit);
  Several all = 0;
  std::size_t at = 0;
  for (; at + kUnits <= text.size(); at += kUnits) {
    Several several = 0;
    std::memcpy(&several, text.data() + at, sizeof several);
    all |= several;
  }
  for (; at < text.size(); ++at) all |= static_cast<Several>(text[at]) & kAboveAscii;
  return (all & kAboveAscii) == 0;
}

/// Writes the 8-bit form of characters that are all ASCII, without a zero behind it.
void NarrowAscii(std::u16string_view characters, char* bytes);

/// Writes the 16-bit form of bytes that are all ASCII.
void WidenAscii(std::string_view bytes, char16_t* characters);

}  // namespace quorvane
