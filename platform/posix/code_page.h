#pragma once

#include <memory>

#include "runtime/code_page.h"

namespace quorvane {

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
