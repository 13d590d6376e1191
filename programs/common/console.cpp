#include "programs/common/console.h"

#include <algorithm>

#include "programs/common/customs.h"
#include "runtime/ignored_result.h"

namespace quorvane::programs {
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

std::size_t Console::ReadSome(char* buffer, std::size_t size) {
  Flush();
  if (!said_that_it_waits_ && IsTerminal(StandardStream::kInput)) {
    said_that_it_waits_ = true;
    Complain("reading from the terminal; " + std::string(EndOfInputKeys()) + " ends the input");
  }
  if (const auto count = ReadStandardInput(buffer, size)) return *count;
  throw StreamError("the standard input cannot be read");
}

std::size_t Console::Read(char* buffer, std::size_t size) {
  std::size_t total = 0;
  while (total < size) {
    const std::size_t count = ReadSome(buffer + total, size - total);
    if (count == 0) break;
    total += count;
  }
  return total;
}

std::optional<std::string> Console::ReadAll(std::size_t most) {
  std::string all;
  for (;;) {
    const std::size_t before = all.size();
    all.resize(before + kPieceSize);
    const std::size_t count = ReadSome(all.data() + before, kPieceSize);
    all.resize(before + count);
    if (all.size() > most) return std::nullopt;
    if (count == 0) return all;
  }
}

std::optional<std::string> Console::ReadLine() {
  std::size_t end = arrived_.find('\n', line_start_);
  while (end == std::string::npos) {
    arrived_.erase(0, line_start_);
    line_start_ = 0;
    const std::size_t before = arrived_.size();
    arrived_.resize(before + kPieceSize);
    const std::size_t count = ReadSome(arrived_.data() + before, kPieceSize);
    arrived_.resize(before + count);
    if (count == 0) break;
    end = arrived_.find('\n', before);
  }
  if (line_start_ == arrived_.size()) return std::nullopt;
  std::string line = arrived_.substr(line_start_, end - line_start_);
  line_start_ = std::min(end, arrived_.size() - 1) + 1;
  if (line.ends_with('\r')) line.pop_back();
  return line;
}

}  // namespace quorvane::programs
