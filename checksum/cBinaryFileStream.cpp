#include "checksum/cBinaryFileStream.h"

#include "runtime/ignored_result.h"
#include "runtime/integers.h"
#include "runtime/runtime_error.h"

namespace quorvane {

cBinaryFileStream::cBinaryFileStream(Files& file_access, App& module, Kernel32& kernel)
    : files_(file_access), module_(module), kernel_(kernel) {}

cBinaryFileStream::~cBinaryFileStream() { Dispose(); }

void cBinaryFileStream::PutFile(const Text& name) {
  Dispose();
  FileName_ = name;
  std::int32_t error_number = 0;
  if (!FileIsListed(FileName_, error_number)) Raise(error_number, module_.EXEName() + u".File");
  // Kept: the number is stored before the open and stays when that fails, so the next Dispose
  // closes whatever is open under it by then, be it another stream's file. Pinned by
  // StreamFile.WhoseOpenFailsKeepsTheAllottedNumber.
  FileNumber_ = files_.FreeFileNumber();
  files_.OpenForReading(FileName_, FileNumber_);
  // Kept: FilePosition is not set back, so of a second file the stream gives only as many bytes,
  // from its start, as it is longer than what was read before; a caller that gives one object a
  // second file sees it. Pinned by SecondFile.ThatIsLongerGivesItsFrontOnly.
  FileLength_ = files_.Length(FileNumber_);
}

std::int32_t cBinaryFileStream::Read(ByteArray& buffer, std::int32_t size) {
  // Kept: a size of 0 or less is not refused but counts, backwards if negative, and is returned;
  // GetFileCrc32 asks for 8192 only. Pinned by
  // StreamRead.ANegativeSizeMovesBackwardsAndIsReturned.
  std::int32_t count = size;
  // Kept: position and size must fit 32 bits on the call that reports the end, too, so with blocks
  // of 8192 bytes the largest file has 2147475455 and any larger one raises overflow (6).
  // Pinned by StreamLimits.AFileOf2147475456BytesFailsOnlyWhereTheEndWouldBeReported.
  if (CheckedAdd(FilePosition_, size) < FileLength_) {
    // Kept: a full block fills the whole buffer, whatever the size says, and needs no copy;
    // GetFileCrc32 passes a buffer of exactly that size. Pinned by
    // StreamRead.AFullBlockFillsTheBufferWhateverTheSize.
    files_.Read(FileNumber_, buffer);
  } else {
    // Kept: where the length is negative, or below the position, the end is reported by a negative
    // count, once; GetFileCrc32 ends at 0 or less. Pinned by
    // StreamRead.ALengthBelowZeroIsReturnedByTheFirstRead.
    count = CheckedSubtract(FileLength_, FilePosition_);
    if (count > 0) {
      ReadLastBlock(buffer, count);
    } else {
      Dispose();
    }
  }
  FilePosition_ = CheckedAdd(FilePosition_, count);
  return count;
}

void cBinaryFileStream::ReadLastBlock(ByteArray& buffer, std::int32_t count) {
  // The file may have grown since it was measured: an array of its own keeps the read from taking
  // more than was left then.
  ByteArray last_block(0, count - 1);
  files_.Read(FileNumber_, last_block);
  std::uint8_t& first = buffer.At(0);
  IgnoreResult(buffer.At(count - 1));  // raises where the copy would run over the buffer's end
  kernel_.RtlMoveMemory(&first, &last_block.At(0), static_cast<std::uint32_t>(count));
}

void cBinaryFileStream::Dispose() {
  if (FileNumber_ == 0) return;
  files_.Close(FileNumber_);
  FileNumber_ = 0;
}

bool cBinaryFileStream::FileIsListed(const Text& name, std::int32_t& error_number) {
  error_number = 0;
  Text entry;
  try {
    entry = files_.ListName(name);
  } catch (...) {
    error_number = CurrentRuntimeError().number;
  }
  if (error_number != 0) return false;
  if (entry.IsEmpty()) error_number = ErrorNumber::kFileNotFound;
  return !entry.IsEmpty();
}

}  // namespace quorvane
