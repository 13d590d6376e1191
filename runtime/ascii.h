#pragma once

#include <string_view>

namespace quorvane {

// ASCII, 0 to 127, is the same in every code page. Most texts around a call to the system hold
// nothing else, so they go to 8 bits and back without asking the page.

/// Whether all units are ASCII.
[[nodiscard]] bool IsAscii(std::u16string_view characters);
/// Whether all bytes are ASCII.
[[nodiscard]] bool IsAscii(std::string_view bytes);

/// Writes the 8-bit form of characters that are all ASCII, without a zero behind it.
void NarrowAscii(std::u16string_view characters, char* bytes);

/// Writes the 16-bit form of bytes that are all ASCII.
void WidenAscii(std::string_view bytes, char16_t* characters);

}  // namespace quorvane
