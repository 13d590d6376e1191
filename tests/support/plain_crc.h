#pragma once

#include <cstdint>
#include <span>

#include "checksum/crc_register.h"

namespace quorvane::testing {

/// The CRC register after the bytes, in the plain way: one byte after the other. What the fast way
/// must equal and is measured against.
[[nodiscard]] inline std::uint32_t AdvanceCrcPlainly(const CrcTable& table, std::uint32_t crc,
                                                     std::span<const std::uint8_t> bytes) {
  for (const std::uint8_t byte : bytes)
    crc = (crc >> 8) ^ static_cast<std::uint32_t>(table[(crc ^ byte) & 0xFF]);
  return crc;
}

/// The finished CRC in the plain way.
[[nodiscard]] inline std::int32_t PlainCrc(std::span<const std::uint8_t> bytes) {
  static const CrcTable kTable = BuildCrcTable();
  return static_cast<std::int32_t>(~AdvanceCrcPlainly(kTable, 0xFFFFFFFF, bytes));
}

}  // namespace quorvane::testing
