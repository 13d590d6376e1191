#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace quorvane {

/// Whether all units are ASCII, 0 to 127: those are the same in every code page.
template <class Unit>
[[nodiscard]] bool IsAscii(std::basic_string_view<Unit> text) {
  static_assert(sizeof(Unit) <= 2);
  // Several units at a time: this stands before and behind every call to the system.
  constexpr std::uint64_t kAboveAscii = sizeof(Unit) == 1 ? 0x8080808080808080 : 0xFF80FF80FF80FF80;
  constexpr std::size_t kUnits = sizeof(std::uint64_t) / sizeof(Unit);
  std::uint64_t all = 0;
  std::size_t at = 0;
  for (; at + kUnits <= text.size(); at += kUnits) {
    std::uint64_t several = 0;
    std::memcpy(&several, text.data() + at, sizeof several);
    all |= several;
  }
  for (; at < text.size(); ++at) all |= static_cast<std::uint64_t>(text[at]) & kAboveAscii;
  return (all & kAboveAscii) == 0;
}

}  // namespace quorvane
