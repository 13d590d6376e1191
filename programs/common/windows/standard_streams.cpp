#include "programs/common/standard_streams.h"

#include <windows.h>

#include "programs/common/windows/system_message.h"
#include "runtime/utf8.h"

namespace quorvane::programs {
namespace {

// The system's handles and no C streams: those would turn newlines into pairs and end an input at
// a Ctrl+Z.
HANDLE Handle(StandardStream stream) {
  if (stream == StandardStream::kInput) return ::GetStdHandle(STD_INPUT_HANDLE);
  return ::GetStdHandle(stream == StandardStream::kOutput ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

bool IsConsole(HANDLE handle) {
  DWORD mode = 0;
  return ::GetConsoleMode(handle, &mode) != 0;
}

// A console takes a limited amount at once.
constexpr std::size_t kConsolePiece = 8192;

std::optional<std::string> WriteToConsole(HANDLE console, std::string_view bytes) {
  const Text text = FromUtf8(bytes);
  std::u16string_view rest = text.Characters();
  while (!rest.empty()) {
    const auto wanted = static_cast<DWORD>(std::min(rest.size(), kConsolePiece));
    DWORD written = 0;
    if (::WriteConsoleW(console, rest.data(), wanted, &written, nullptr) == 0 || written == 0)
      return SystemMessage(::GetLastError());
    rest.remove_prefix(written);
  }
  return std::nullopt;
}

std::optional<std::string> WriteToFile(HANDLE file, std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD written = 0;
    if (::WriteFile(file, bytes.data(), bytes.size(), &written, nullptr) == 0)
      return SystemMessage(::GetLastError());
    if (written == 0) return SystemMessage(ERROR_DISK_FULL);
    bytes.remove_prefix(written);
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> WriteStream(StandardStream stream, std::string_view bytes) {
  const HANDLE handle = Handle(stream);
  return IsConsole(handle) ? WriteToConsole(handle, bytes) : WriteToFile(handle, bytes);
}

bool IsTerminal(StandardStream stream) { return IsConsole(Handle(stream)); }

// What is typed at a console arrives in the console's own code page: binary input comes from files
// and pipes.
std::optional<std::size_t> ReadStandardInput(char* buffer, std::size_t size) {
  DWORD count = 0;
  if (::ReadFile(Handle(StandardStream::kInput), buffer, size, &count, nullptr) != 0) return count;
  // The far end of a pipe was closed: that is how a pipe ends.
  return ::GetLastError() == ERROR_BROKEN_PIPE ? std::optional<std::size_t>(0) : std::nullopt;
}

}  // namespace quorvane::programs
