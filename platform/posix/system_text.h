#pragma once

#include <string>
#include <string_view>

namespace quorvane {

// Texts on their way between the 8-bit calls, which use the system's code page, and the system,
// which uses UTF-8 for the names of files, users and machines.

[[nodiscard]] std::u16string FromSystemPage(std::string_view bytes);
[[nodiscard]] std::string ToSystemPage(std::u16string_view characters);
[[nodiscard]] std::string SystemPageToUtf8(std::string_view bytes);
[[nodiscard]] std::string Utf8ToSystemPage(std::string_view utf8);

}  // namespace quorvane
