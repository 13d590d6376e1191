#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quorvane::programs {

/// A predefined key of the registry.
struct Hive {
  const char* short_name;
  const char* long_name;
  std::uint32_t handle;
};

inline constexpr std::array kHives{
    Hive{"HKCR", "HKEY_CLASSES_ROOT", 0x80000000}, Hive{"HKCU", "HKEY_CURRENT_USER", 0x80000001},
    Hive{"HKLM", "HKEY_LOCAL_MACHINE", 0x80000002}, Hive{"HKU", "HKEY_USERS", 0x80000003},
    Hive{"HKCC", "HKEY_CURRENT_CONFIG", 0x80000005}};

/// The hive of that short or long name, whatever its case.
[[nodiscard]] inline std::optional<Hive> HiveNamed(std::string_view word) {
  std::string name(word);
  for (char& c : name)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  const auto* const found = std::ranges::find_if(kHives, [&name](const Hive& hive) {
    return name == hive.short_name || name == hive.long_name;
  });
  if (found == kHives.end()) return std::nullopt;
  return *found;
}

/// "HKCR, HKCU, HKLM, HKU, HKCC"
[[nodiscard]] inline std::string HiveNames() {
  std::string names;
  for (const Hive& hive : kHives)
    names += (names.empty() ? "" : ", ") + std::string(hive.short_name);
  return names;
}

}  // namespace quorvane::programs
