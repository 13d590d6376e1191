// quorvane crc: the CRC-32 of files, as the module computes its own.

#include <array>

#include "checksum/cBinaryFileStream.h"
#include "checksum/cCRC32.h"
#include "programs/common/program.h"
#include "programs/quorvane/commands.h"
#include "programs/quorvane/progress.h"
#include "runtime/byte_array.h"
#include "runtime/integers.h"
#include "runtime/utf8.h"

namespace quorvane::examples {
namespace {

constexpr const char* kHelp =
    "usage: quorvane crc FILE...\n"
    "\n"
    "Prints for each FILE its CRC-32 (IEEE 802.3) as a signed decimal number, a tab and the name.\n"
    "FILE may be - for standard input. A file that is open for writing elsewhere is refused, and\n"
    "hidden files and directories are not found. After a file that fails the others are still\n"
    "done, and the exit code is 1.\n";

// A file whose bytes are counted as they pass, for the progress bar.
class WatchedFileStream final : public cBinaryFileStream {
 public:
  explicit WatchedFileStream(Progress& progress) : progress_(progress) {}

  std::int32_t Read(ByteArray& buffer, std::int32_t size) override {
    const std::int32_t count = cBinaryFileStream::Read(buffer, size);
    progress_.Advance(count);
    return count;
  }

 private:
  Progress& progress_;
};

// Standard input in the place of a file: of any length, since nobody asks for it beforehand.
class InputStream final : public cBinaryFileStream {
 public:
  explicit InputStream(Console& console) : console_(console) {}

  std::int32_t Read(ByteArray& buffer, std::int32_t /*size*/) override {
    if (ended_) return 0;
    const std::span<std::uint8_t> block = buffer.Elements();
    const std::size_t count = console_.Read(reinterpret_cast<char*>(block.data()), block.size());
    ended_ = count < block.size();
    return NarrowTo32(count);
  }

 private:
  Console& console_;
  bool ended_ = false;
};

std::int32_t CrcOfInput(Console& console) {
  InputStream stream(console);
  return cCRC32().GetFileCrc32(stream);
}

std::int32_t CrcOfFile(const std::string& name, Console& console) {
  Progress progress(console);
  WatchedFileStream stream(progress);
  stream.PutFile(FromUtf8(name));
  progress.Expect(stream.Length());
  return cCRC32().GetFileCrc32(stream);
}

int Crc(const Arguments& arguments, Console& console) {
  arguments.RequireOperands(1, kAnyNumber, "FILE");
  int exit_code = ExitCode::kSuccess;
  for (const std::string& name : arguments.Operands()) {
    try {
      const std::int32_t crc = name == "-" ? CrcOfInput(console) : CrcOfFile(name, console);
      console.Out(std::to_string(crc) + "\t" + name + "\n");
    } catch (const RuntimeError& error) {
      console.Complain(DescribeError(error) + ": " + name);
      exit_code = ExitCode::kFailure;
    }
  }
  return exit_code;
}

constexpr std::array kCommands{
    Command{"crc", "CRC-32 of files, as signed decimal numbers", kHelp, {}, Crc},
};

}  // namespace

std::span<const Command> CrcCommands() { return kCommands; }

}  // namespace quorvane::examples
