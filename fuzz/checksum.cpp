// The files that are summed: any bytes, in blocks of any size, and files that are shorter or longer
// than their length says.
//
// Oracle: zlib's crc32(), and the bytes of the file joined.

#include <zlib.h>

#include "checksum/cBinaryFileStream.h"
#include "checksum/cCRC32.h"
#include "checksum/crc_register.h"
#include "fuzz/target.h"
#include "platform/files.h"
#include "runtime/runtime_error.h"

namespace quorvane::fuzz::checksum {

class OneFile final : public Files {
 public:
  explicit OneFile(const std::string& bytes)
      : length(static_cast<std::int32_t>(bytes.size())), bytes_(bytes) {}

  Text ListName(const Text& name) override { return name; }
  std::int16_t FreeFileNumber() override { return 1; }
  void OpenForReading(const Text& /*name*/, std::int16_t /*number*/) override { is_open = true; }
  std::int32_t Length(std::int16_t /*number*/) override { return length; }
  void Read(std::int16_t /*number*/, ByteArray& buffer) override {
    Require(is_open, "a read of a closed file");
    const auto room = buffer.Elements();
    const std::size_t count = std::min(room.size(), bytes_.size() - place_);
    std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(place_), count, room.begin());
    place_ += count;
  }
  void Close(std::int16_t /*number*/) override { is_open = false; }

  std::int32_t length;
  bool is_open = false;

 private:
  std::string bytes_;
  std::size_t place_ = 0;
};

std::int32_t ZlibCrc(const std::string& bytes) {
  const auto* const start = reinterpret_cast<const Bytef*>(bytes.data());
  return static_cast<std::int32_t>(::crc32(0, start, static_cast<uInt>(bytes.size())));
}

void CheckArray(const std::string& bytes, std::int16_t lower) {
  const std::int32_t upper = lower + static_cast<std::int32_t>(bytes.size()) - 1;
  const bool is_counted = upper >= -32768 && upper < 32767;
  ByteArray array(lower, upper);
  std::ranges::copy(bytes, reinterpret_cast<char*>(array.Elements().data()));
  try {
    Require(cCRC32().GetByteArrayCrc32(array) == ZlibCrc(bytes) && is_counted,
            "GetByteArrayCrc32()");
  } catch (const RuntimeError& error) {
    Require(error.number == 6 && !is_counted, "GetByteArrayCrc32() raises");
  }
}

void CheckRegister(const std::string& bytes, std::size_t cut) {
  static const CrcTable kTable = BuildCrcTable();
  const std::span all(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  const auto front = all.first(std::min(cut, all.size()));
  const std::uint32_t crc =
      AdvanceCrc(kTable, AdvanceCrc(kTable, 0xFFFFFFFF, front), all.subspan(front.size()));
  Require(static_cast<std::int32_t>(~crc) == ZlibCrc(bytes), "AdvanceCrc()");
}

void CheckBlocks(const std::string& bytes, std::int32_t size) {
  OneFile file(bytes);
  cBinaryFileStream stream(file);
  stream.PutFile(u"file");
  ByteArray buffer(0, size - 1);
  std::string read;
  std::int32_t count = 0;
  while ((count = stream.Read(buffer, size)) > 0) {
    Require(count <= size, "more than a block");
    read.append(reinterpret_cast<const char*>(buffer.Elements().data()),
                static_cast<std::size_t>(count));
  }
  Require(read == bytes && !file.is_open, "the blocks of a file");
}

// A file that is shorter than it says: what is missing of its last block is zero.
void CheckFile(const std::string& bytes, std::int32_t difference) {
  constexpr std::int32_t kBlock = 8192;
  OneFile file(bytes);
  file.length = std::max(0, file.length + difference);
  const std::int32_t last_block = file.length - file.length % kBlock;
  cBinaryFileStream stream(file);
  stream.PutFile(u"file");
  const std::int32_t crc = cCRC32().GetFileCrc32(stream);
  std::string shown = bytes;
  shown.resize(static_cast<std::size_t>(file.length));
  const bool is_known = bytes.size() >= static_cast<std::size_t>(last_block);
  Require(!is_known || crc == ZlibCrc(shown), "GetFileCrc32()");
  Require(!file.is_open, "the file stays open");
}

void Run(Input input) {
  const std::size_t times = input.Byte() < 250 ? 1 : 60;
  const auto lower = static_cast<std::int16_t>(input.Number16());
  const std::uint16_t cut = input.Number16();
  const std::int32_t size = input.Byte() + 1;
  const std::int32_t difference = input.Byte() - 128;
  const std::string piece = input.Rest();
  std::string bytes;
  for (std::size_t i = 0; i < times; ++i) bytes += piece;
  CheckArray(bytes, lower);
  CheckRegister(bytes, cut);
  CheckBlocks(bytes, size);
  CheckFile(bytes, difference);
}

const Registered kTarget("checksum", Run);

}  // namespace quorvane::fuzz::checksum
