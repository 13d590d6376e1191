#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "runtime/code_page.h"
#include "runtime/text.h"

namespace quorvane {

// Texts on their way between the 8-bit calls, which use the system's code page, and the system,
// which uses UTF-8 for the names of users and machines, and any bytes for those of files.

[[nodiscard]] std::u16string FromSystemPage(std::string_view bytes);
[[nodiscard]] std::string ToSystemPage(std::u16string_view characters);

/// The form in which names are compared where the platform does not tell upper from lower case:
/// each character in upper case by itself, so that the length stays (the sharp s is not SS).
[[nodiscard]] std::u16string FoldCase(std::u16string_view name);

/// The text of a file's name in UTF-8. In one that is none, each byte above 127 becomes the single
/// half of a surrogate pair U+DC00 + byte, so that every name of the system has a text of its own.
[[nodiscard]] Text FileNameFrom(std::string_view bytes);

/// The bytes of such a text, the reverse of that: each backslash is taken as a slash, and the name
/// ends at its first zero.
[[nodiscard]] std::string SystemFileName(std::u16string_view name);

/// A Windows code page by its number, as far as this system's iconv knows it as CP<number> and it
/// is one of the pages of at most two bytes a character (1250 to 1258, 437, 850, 932, 936, 949, 950
/// ...); null for any other.
///
/// As on Windows a byte below 0xA0 that the page leaves unused and the C1 control of the same value
/// stand for each other, one above stands for a character for private use; a character that the
/// page lacks becomes a question mark, each half of a surrogate pair one of its own, and bytes that
/// form no character become the page's default character (U+30FB in 932, else a question mark).
///
/// Left open: Windows gives some characters the most similar one of the page (a "best fit", such as
/// A for A with macron), and has characters for private use in 936, 949 and 950; here those become
/// question marks, as do U+2550, U+255E, U+2561 and U+256A in 950.
[[nodiscard]] std::unique_ptr<CodePage> MakeCodePage(int number);

/// Makes that page the one of systemCodePage(), which starts as 1252; false, and no change, when
/// MakeCodePage() has none. For the start of a program, before threads use the old one.
bool SetSystemCodePage(int number);

}  // namespace quorvane
