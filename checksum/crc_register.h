#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace quorvane {

/// The table of cCRC32: 256 entries and a slot behind them.
///
/// Kept: the slot behind them, 256, stays 0 and nothing reads it, as an index has 8 bits; it shows
/// in the size of the table. Pinned by CrcTable.HasASpareSlotThatStaysZero.
using CrcTable = std::array<std::int32_t, 257>;

/// The table for the reflected polynomial 0xEDB88320: slot i holds the register i after 8 bits.
[[nodiscard]] CrcTable BuildCrcTable();

/// The CRC register after the bytes: for each one, in order, the same value as
///   register = (register >> 8) ^ table[(register ^ byte) & 0xFF]
/// gives, and at one lookup, one XOR and one shift a byte, but faster than that loop, see
/// benchmarks/README.md. Reads nothing outside the bytes, and asks for no alignment.
[[nodiscard]] std::uint32_t AdvanceCrc(const CrcTable& table, std::uint32_t crc,
                                       std::span<const std::uint8_t> bytes);

}  // namespace quorvane
