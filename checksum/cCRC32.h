#pragma once

#include <cstdint>

#include "checksum/cBinaryFileStream.h"
#include "checksum/crc_register.h"
#include "runtime/byte_array.h"

namespace quorvane {

/// The CRC-32 of IEEE 802.3: reflected polynomial 0xEDB88320, register preset to all ones, final
/// complement. The value is handed out as a signed 32-bit integer, so one with its top bit set is
/// negative: the ASCII bytes 123456789 give 0xCBF43926, which is -873187034.
///
/// The table is the only state and is built at creation; one object serves any number of calls in
/// any order.
class cCRC32 {
 public:
  cCRC32();

  /// The CRC of a one-dimensional array, in the order of its indices, whatever its lower bound; an
  /// empty one gives 0.
  /// Raises overflow (6) for a bound outside 16 bits and, after the last element, for an upper
  /// bound of 32767: at most 32767 elements from index 0 on. Raises subscript out of range (9) for
  /// an array without bounds, and for one of several dimensions at its first element.
  [[nodiscard]] std::int32_t GetByteArrayCrc32(const ByteArray& bytes) const;

  /// The CRC of what the stream still has to give, read in blocks of 8192 bytes through one buffer;
  /// 0 for a stream without a file. Calls nothing on the stream but Read: that closes the file when
  /// it reports the end by a count of 0 (or less). Errors of Read go to the caller unchanged, with
  /// the stream left as Read left it. A count outside 16 bits raises overflow (6), one beyond the
  /// buffer subscript out of range (9).
  [[nodiscard]] std::int32_t GetFileCrc32(cBinaryFileStream& stream) const;

 private:
  CrcTable CrcTable_;
};

}  // namespace quorvane
