#include "checksum/cBinaryFileStream.h"

#include "runtime/integers.h"
#include "runtime/runtime_error.h"

namespace quorvane {

cBinaryFileStream::cBinaryFileStream(Files& file_access, App& module, Kernel32& os)
    : files_(file_access), module_(module), os_(os) {}

cBinaryFileStream::~cBinaryFileStream() { Dispose(); }

void cBinaryFileStream::PutFile(const Text& name) {
  Dispose();
  FileName_ = name;
  std::int32_t error_number = 0;
  if (!FileIsListed(FileName_, error_number)) Raise(error_number, module_.EXEName() + u".File");
  FileNumber_ = files_.FreeFileNumber();
  files_.OpenForReading(FileName_, FileNumber_);
  FileLength_ = files_.Length(FileNumber_);
}

std::int32_t cBinaryFileStream::Read(ByteArray& buffer, std::int32_t size) {
  std::int32_t count = size;
  if (CheckedAdd(FilePosition_, size) < FileLength_) {
    files_.Read(FileNumber_, buffer);
  } else {
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
  static_cast<void>(buffer.At(count - 1));  // raises where the copy would run over the buffer's end
  os_.RtlMoveMemory(&first, &last_block.At(0), static_cast<std::uint32_t>(count));
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
