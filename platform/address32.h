#pragma once

#include <cstdint>

namespace quorvane {

/// An address as the 32-bit records and calls of the platform carry it; 0 is no address.
///
/// On 32-bit Windows it is the pointer's own value. Elsewhere it is whatever number the side that
/// hands it out chooses, and only that side can turn it into memory.
enum class Address32 : std::uint32_t {};

/// The null pointer's.
inline constexpr Address32 kNoAddress{0};

/// How far `address` lies behind `start`. An address before the start comes out as a very large
/// distance, as 32-bit arithmetic has it.
[[nodiscard]] constexpr std::uint32_t Distance(Address32 start, Address32 address) {
  return static_cast<std::uint32_t>(address) - static_cast<std::uint32_t>(start);
}

}  // namespace quorvane
