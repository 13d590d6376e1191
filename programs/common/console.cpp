#include "programs/common/console.h"

#include "runtime/ignored_result.h"

namespace quorvane::examples {
namespace {

constexpr std::size_t kPieceSize = 65536;

}  // namespace

void Console::Out(std::string_view bytes) {
  collected_ += bytes;
  if (collected_.size() >= kPieceSize || IsTerminal(StandardStream::kOutput)) Flush();
}

void Console::Flush() {
  // Emptied first: after a failure the rest is not tried again.
  const std::string piece = std::move(collected_);
  collected_.clear();
  if (piece.empty()) return;
  if (const auto reason = WriteStream(StandardStream::kOutput, piece))
    throw StreamError("the output cannot be written: " + *reason);
}

void Console::Complain(const std::string& message) {
  Flush();
  Err(program_name_ + ": " + message + "\n");
}

void Console::Err(std::string_view bytes) {
  IgnoreResult(WriteStream(StandardStream::kError, bytes));
}

std::size_t Console::Read(char* buffer, std::size_t size) {
  if (const auto count = ReadStandardInput(buffer, size)) return *count;
  throw StreamError("the standard input cannot be read");
}

std::string Console::ReadAll() {
  std::string all;
  for (;;) {
    const std::size_t before = all.size();
    all.resize(before + kPieceSize);
    const std::size_t count = Read(all.data() + before, kPieceSize);
    all.resize(before + count);
    if (count < kPieceSize) return all;
  }
}

}  // namespace quorvane::examples
