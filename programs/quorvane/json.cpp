#include "programs/quorvane/json.h"

#include "runtime/utf8.h"

namespace quorvane::programs {

std::string JsonText(std::string_view utf8) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text = "\"";
  for (const char c : ToUtf8(FromUtf8(utf8))) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      text.append({'\\', c});
    } else if (c == '\n') {
      text += "\\n";
    } else if (byte < 0x20 || byte == 0x7F) {
      text.append("\\u00").append({kDigits[byte >> 4], kDigits[byte & 15]});
    } else {
      text += c;
    }
  }
  return text + '"';
}

std::string JsonBoolean(bool value) { return value ? "true" : "false"; }

std::string JsonList(std::span<const std::string> values) {
  std::string list;
  for (const std::string& value : values) list += (list.empty() ? "" : ", ") + value;
  return "[" + list + "]";
}

std::string JsonRecord(std::initializer_list<std::pair<const char*, std::string>> members) {
  std::string record;
  for (const auto& [name, value] : members)
    record += (record.empty() ? "" : ", ") + JsonText(name) + ": " + value;
  return "{" + record + "}";
}

}  // namespace quorvane::programs
