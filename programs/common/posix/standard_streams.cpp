#include "programs/common/standard_streams.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace quorvane::programs {
namespace {

int Descriptor(StandardStream stream) {
  if (stream == StandardStream::kInput) return STDIN_FILENO;
  return stream == StandardStream::kOutput ? STDOUT_FILENO : STDERR_FILENO;
}

}  // namespace

std::optional<std::string> WriteStream(StandardStream stream, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(Descriptor(stream), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::strerror(errno);
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return std::nullopt;
}

bool IsTerminal(StandardStream stream) { return ::isatty(Descriptor(stream)) == 1; }

std::optional<std::size_t> ReadStandardInput(char* buffer, std::size_t size) {
  for (;;) {
    const ssize_t count = ::read(STDIN_FILENO, buffer, size);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR) return std::nullopt;
  }
}

}  // namespace quorvane::programs
