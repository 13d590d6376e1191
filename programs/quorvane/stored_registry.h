#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace quorvane::programs {

// The registry as it is kept, for looking into it and carrying it elsewhere: all keys and all kinds
// of values, where the library's operations reach single values of some kinds. Answered once in
// posix/, by the file that stands in for the registry, and once in windows/, by the system's calls.
// Each raises StreamError with the system's reason.

struct RegistryEntry {
  std::u16string name;    ///< empty for the key's default value
  std::int32_t type = 0;  ///< by the platform's numbers
  std::string data;       ///< its bytes; texts (types 1, 2 and 7) in UTF-16, low byte first

  [[nodiscard]] bool IsText() const { return type == 1 || type == 2 || type == 7; }
};

/// A key by its whole path, "HKEY_CURRENT_USER\Software\Quorvane", and its values.
struct RegistryBranch {
  std::u16string path;
  std::vector<RegistryEntry> values;
};

/// The key and all keys below it, each behind its parent; nothing where there is no such key.
[[nodiscard]] std::optional<std::vector<RegistryBranch>> BranchesFrom(const std::u16string& path);

struct RegistryChange {
  enum class Kind { kMakeKey, kRemoveKey, kSetValue, kRemoveValue };

  Kind kind = Kind::kMakeKey;
  std::u16string path;
  RegistryEntry value;  ///< for the removal of a value its name alone
};

/// Makes the changes in order. A key goes with all that is below it; what is not there is let pass.
/// On Linux all of them or none, on Windows up to the one that fails.
void ApplyChanges(std::span<const RegistryChange> changes);

}  // namespace quorvane::programs
