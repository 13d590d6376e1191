#include "programs/quorvane/input.h"

#include <algorithm>
#include <fstream>
#include <optional>

#include "programs/quorvane/file_name.h"

namespace quorvane::programs {
namespace {

constexpr std::size_t kMost = std::size_t{64} * 1024 * 1024;

std::optional<std::string> ReadFile(const std::string& name) {
  std::ifstream file(PathOf(name), std::ios::binary);
  std::string bytes;
  std::string piece(65536, '\0');
  while (file && bytes.size() <= kMost) {
    file.read(piece.data(), static_cast<std::streamsize>(piece.size()));
    bytes.append(piece, 0, static_cast<std::size_t>(file.gcount()));
  }
  // A folder opens on some systems and cannot be read then.
  if (!file.is_open() || file.bad()) throw StreamError("'" + name + "' cannot be read");
  return bytes.size() > kMost ? std::nullopt : std::optional(bytes);
}

}  // namespace

std::string ReadInput(const std::string& name, Console& console) {
  const auto bytes = name == "-" ? console.ReadAll(kMost) : ReadFile(name);
  if (!bytes) throw StreamError("'" + name + "' has more than 64 MB");
  return *bytes;
}

std::vector<std::string> LinesOf(const std::string& name, Console& console) {
  const std::string bytes = ReadInput(name, console);
  std::vector<std::string> lines;
  for (std::size_t start = 0; start < bytes.size();) {
    const std::size_t end = std::min(bytes.find('\n', start), bytes.size());
    lines.push_back(bytes.substr(start, end - start));
    if (lines.back().ends_with('\r')) lines.back().pop_back();
    start = end + 1;
  }
  return lines;
}

}  // namespace quorvane::programs
