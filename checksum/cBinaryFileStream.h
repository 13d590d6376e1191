#pragma once

#include <cstdint>

#include "platform/app.h"
#include "platform/files.h"
#include "platform/kernel32.h"
#include "runtime/byte_array.h"
#include "runtime/text.h"

namespace quorvane {

/// Hands out the bytes of one file, block by block, for reading only. The end is worked out from
/// the length measured on opening and an own count of bytes; the stream never asks the file where
/// it stands.
///
/// An object serves one file in its life: a second PutFile() opens the new file at its first byte,
/// but FilePosition runs on.
class cBinaryFileStream {
 public:
  /// A stream without a file yet. What it is given must outlive it.
  explicit cBinaryFileStream(Files& file_access = files(), App& module = app(),
                             Kernel32& kernel = kernel32());
  cBinaryFileStream(const cBinaryFileStream&) = delete;
  cBinaryFileStream& operator=(const cBinaryFileStream&) = delete;
  /// Calls Dispose().
  virtual ~cBinaryFileStream();

  /// The name last assigned, also when that assignment failed; empty at first.
  [[nodiscard]] Text File() const { return FileName_; }

  /// Closes a file that is still open, stores the name, tests for the file by a directory listing,
  /// opens it with writers shut out and measures its length. A name that the listing does not find
  /// raises file not found (53), a failing listing its own number; both with the source
  /// "<module>.File" and the standard description. A failing open raises the platform's error
  /// unchanged. Whatever fails, Length() stays as it was.
  void PutFile(const Text& name);

  /// The length in bytes, measured when the file was opened; 0 in a new object; outlives the
  /// closing.
  [[nodiscard]] std::int32_t Length() const { return FileLength_; }

  /// Reads the next block and returns its count of bytes; 0 at the end, where the file is closed.
  ///
  /// The buffer must have an element with the index 0 and exactly `size` elements; this is not
  /// enforced: a full block fills the whole buffer whatever `size` says. The last block leaves the
  /// elements behind its count as they were. Raises overflow (6) when position and size, or what is
  /// left, leave the range of 32 bits; subscript out of range (9) when the last block finds no
  /// element 0 in the buffer, or no room for all of it; bad file name or number (52) when bytes are
  /// left but the file was disposed of; and the platform's error of a failing read. The position
  /// then stays as it was. At the end a negative count may be returned once: see the .cpp file.
  [[nodiscard]] virtual std::int32_t Read(ByteArray& buffer, std::int32_t size);

  /// Closes the file if one is open; may be repeated. Name, length and position stay.
  void Dispose();

 private:
  [[nodiscard]] bool FileIsListed(const Text& name, std::int32_t& error_number);
  void ReadLastBlock(ByteArray& buffer, std::int32_t count);

  Files& files_;
  App& module_;
  Kernel32& kernel_;
  Text FileName_ = u"";
  std::int16_t FileNumber_ = 0;
  std::int32_t FileLength_ = 0;
  std::int32_t FilePosition_ = 0;
};

}  // namespace quorvane
