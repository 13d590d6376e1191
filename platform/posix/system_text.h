#pragma once

#include <string>
#include <string_view>

#include "runtime/text.h"

namespace quorvane {

// Texts on their way between the 8-bit calls, which use the system's code page, and the system,
// which uses UTF-8 for the names of users and machines, and any bytes for those of files.

[[nodiscard]] std::u16string FromSystemPage(std::string_view bytes);
[[nodiscard]] std::string ToSystemPage(std::u16string_view characters);
[[nodiscard]] std::string Utf8ToSystemPage(std::string_view utf8);

/// The form in which names are compared where the platform does not tell upper from lower case:
/// each character in upper case by itself, so that the length stays (the sharp s is not SS).
[[nodiscard]] std::u16string FoldCase(std::u16string_view name);

/// The text of a file's name in UTF-8. In one that is none, each byte above 127 becomes the single
/// half of a surrogate pair U+DC00 + byte, so that every name of the system has a text of its own.
[[nodiscard]] Text FileNameFrom(std::string_view bytes);

/// The bytes of such a text, the reverse of that: each backslash is taken as a slash, and the name
/// ends at its first zero.
[[nodiscard]] std::string SystemFileName(std::u16string_view name);

}  // namespace quorvane
