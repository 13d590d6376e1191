#include "platform/posix/file_names.h"

#include <algorithm>

#include "runtime/utf8.h"

namespace quorvane {
namespace {

constexpr char16_t kByteMark = 0xDC00;

// How many bytes the valid character at the start has; 0 where there is none.
std::size_t CharacterSize(std::string_view bytes) {
  for (std::size_t size = 1; size <= std::min<std::size_t>(4, bytes.size()); ++size) {
    const std::string_view part = bytes.substr(0, size);
    if (ToUtf8(FromUtf8(part)) == part) return size;
  }
  return 0;
}

}  // namespace

Text FileNameFrom(std::string_view bytes) {
  Text name = FromUtf8(bytes);
  if (ToUtf8(name) == bytes) return name;
  std::u16string characters;
  while (!bytes.empty()) {
    const std::size_t size = CharacterSize(bytes);
    if (size > 0) {
      characters += FromUtf8(bytes.substr(0, size)).Characters();
    } else {
      characters += static_cast<char16_t>(kByteMark + static_cast<unsigned char>(bytes.front()));
    }
    bytes.remove_prefix(std::max<std::size_t>(size, 1));
  }
  return characters;
}

std::string SystemFileName(std::u16string_view name) {
  name = name.substr(0, name.find(u'\0'));
  std::string bytes;
  std::size_t start = 0;
  for (std::size_t at = 0; at <= name.size(); ++at) {
    const bool stands_alone = at == start || (name[at - 1] & 0xFC00) != 0xD800;
    const bool is_byte = at < name.size() && name[at] >= kByteMark + 0x80 &&
                         name[at] <= kByteMark + 0xFF && stands_alone;
    if (!is_byte && at < name.size()) continue;
    bytes += ToUtf8(Text(name.substr(start, at - start)));
    if (is_byte) bytes += static_cast<char>(name[at] - kByteMark);
    start = at + 1;
  }
  std::ranges::replace(bytes, '\\', '/');
  return bytes;
}

}  // namespace quorvane
