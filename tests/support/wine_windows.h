#pragma once

#include <windows.h>

#include <string_view>

namespace quorvane::testing {

/// Whether this is Wine 8, for the few places where it parts from Windows and Wine 10.
inline bool IsWine8() {
  const auto version = reinterpret_cast<const char* (*)()>(reinterpret_cast<void*>(
      ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version")));
  return version != nullptr && std::string_view(version()).starts_with("8.");
}

}  // namespace quorvane::testing
