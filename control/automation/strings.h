#pragma once

#include "control/automation/com.h"
#include "runtime/text.h"

namespace quorvane::component {

/// The text of a BSTR, zeros inside it included. A null BSTR gives an absent text.
[[nodiscard]] Text FromBstr(BSTR string);

/// A fresh BSTR that the receiver owns, never null: an absent text goes out as an empty one, for
/// the sake of callers that look at the characters without a test. Throws std::bad_alloc.
[[nodiscard]] BSTR NewBstr(const Text& text);

/// The characters as the system's calls take them, terminated; good as long as the text lives.
[[nodiscard]] const wchar_t* Wide(const Text& text);
/// The same for calls that only read, yet ask for a pointer to writable characters.
[[nodiscard]] wchar_t* MutableWide(const Text& text);

}  // namespace quorvane::component
