#pragma once

#include <string>

#include "programs/form_host/windows/com.h"

// The system's own controls as parts of the window.
namespace quorvane::programs {

/// A part of that class, with its number; it stands nowhere yet. Raises the system's error.
[[nodiscard]] HWND MakePart(HWND window, const wchar_t* window_class, const Text& text, DWORD style,
                            int id, DWORD extended_style = 0);

/// All of its text.
[[nodiscard]] Text TextOf(HWND window);

/// Places it within its parent, in pixels.
void Put(HWND part, int left, int top, int width, int height);

}  // namespace quorvane::programs
