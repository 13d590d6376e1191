#include "checksum/cCRC32.h"

#include "runtime/integers.h"
#include "runtime/runtime_error.h"

namespace quorvane {
namespace {

constexpr std::uint32_t kPolynomial = 0xEDB88320;
constexpr std::uint32_t kPreset = 0xFFFFFFFF;
constexpr std::int32_t kBlockSize = 8192;

std::uint32_t TableEntry(std::uint32_t value) {
  for (int bit = 0; bit < 8; ++bit) value = (value >> 1) ^ ((value & 1) != 0 ? kPolynomial : 0);
  return value;
}

std::uint32_t Advance(const std::array<std::int32_t, 257>& table, std::uint32_t crc,
                      std::span<const std::uint8_t> bytes) {
  for (const std::uint8_t byte : bytes)
    crc = (crc >> 8) ^ static_cast<std::uint32_t>(table[(byte ^ crc) & 0xFF]);
  return crc;
}

}  // namespace

cCRC32::cCRC32() {
  for (std::uint32_t i = 0; i < 256; ++i) CrcTable_[i] = static_cast<std::int32_t>(TableEntry(i));
}

std::int32_t cCRC32::GetByteArrayCrc32(const ByteArray& bytes) const {
  const std::int16_t upper = NarrowTo16(bytes.UpperBound());
  const std::int16_t lower = NarrowTo16(bytes.LowerBound());
  std::uint32_t crc = kPreset;
  if (lower <= upper) {
    static_cast<void>(bytes.At(lower));
    crc = Advance(CrcTable_, crc, bytes.Elements());
    static_cast<void>(CheckedAdd<std::int16_t>(upper, 1));
  }
  return static_cast<std::int32_t>(~crc);
}

std::int32_t cCRC32::GetFileCrc32(cBinaryFileStream& stream) const {
  ByteArray BlockBuffer(0, kBlockSize - 1);
  std::uint32_t crc = kPreset;
  for (;;) {
    const std::int16_t count = NarrowTo16(stream.Read(BlockBuffer, kBlockSize));
    if (count <= 0) return static_cast<std::int32_t>(~crc);
    static_cast<void>(BlockBuffer.At(count - 1));
    crc = Advance(CrcTable_, crc, BlockBuffer.Elements().first(static_cast<std::size_t>(count)));
  }
}

}  // namespace quorvane
