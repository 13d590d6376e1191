#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

namespace quorvane::profile_store {

// Profile files on disk, see profile_document.h for what is in them.

/// The file of a name: one without a directory lies in the folder of the user's settings, any other
/// one is a path of the system.
[[nodiscard]] std::filesystem::path PlaceOf(std::u16string_view name);
/// The file of a name in the system's code page; null is the system's own profile, which
/// profile.ini in the folder of the user's settings stands in for.
[[nodiscard]] std::filesystem::path NamedProfile(const char* file);

/// As Kernel32::GetPrivateProfileStringA().
[[nodiscard]] std::int32_t Read(const std::filesystem::path& file, const char* section,
                                const char* key, const char* default_text, char* buffer,
                                std::int32_t size);
/// As Kernel32::WritePrivateProfileStringA(). Other programs see the file as it was or as it is
/// afterwards, never half of it; writers wait for each other, so none loses what another wrote.
[[nodiscard]] bool Write(const std::filesystem::path& file, const char* section, const char* key,
                         const char* value);

}  // namespace quorvane::profile_store
