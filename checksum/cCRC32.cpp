#include "checksum/cCRC32.h"

#include "runtime/ignored_result.h"
#include "runtime/integers.h"

namespace quorvane {
namespace {

constexpr std::uint32_t kPreset = 0xFFFFFFFF;
constexpr std::int32_t kBlockSize = 8192;

std::int32_t Complement(std::uint32_t crc) { return static_cast<std::int32_t>(~crc); }

}  // namespace

cCRC32::cCRC32() : CrcTable_(BuildCrcTable()) {}

std::int32_t cCRC32::GetByteArrayCrc32(const ByteArray& bytes) const {
  const std::int16_t upper = NarrowTo16(bytes.UpperBound());
  const std::int16_t lower = NarrowTo16(bytes.LowerBound());
  if (lower > upper) return Complement(kPreset);
  IgnoreResult(bytes.At(lower));  // raises for an array of several dimensions
  const std::uint32_t crc = AdvanceCrc(CrcTable_, kPreset, bytes.Elements());
  // Kept: the 16-bit counter steps once past the last index, so an upper bound of 32767 fails after
  // all bytes are done; 32767 elements from index 0 on are the most that a caller can pass. Pinned
  // by GetByteArrayCrc32.OverflowsAfterTheLastElementAtUpperBound32767.
  IgnoreResult(CheckedAdd<std::int16_t>(upper, 1));
  return Complement(crc);
}

std::int32_t cCRC32::GetFileCrc32(cBinaryFileStream& stream) const {
  ByteArray BlockBuffer(0, kBlockSize - 1);
  std::uint32_t crc = kPreset;
  for (;;) {
    const std::int16_t count = NarrowTo16(stream.Read(BlockBuffer, kBlockSize));
    if (count <= 0) return Complement(crc);
    IgnoreResult(BlockBuffer.At(count - 1));  // raises for a count beyond the buffer
    crc = AdvanceCrc(CrcTable_, crc, BlockBuffer.Elements().first(static_cast<std::size_t>(count)));
  }
}

}  // namespace quorvane
