#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/advapi32.h"
#include "platform/posix/atomic_file.h"

namespace quorvane {

struct StoredValue {
  std::u16string name;    ///< empty for the key's default value
  std::int32_t type = 0;  ///< by the platform's numbers: 1 a text, 3 bytes, 4 an integer ...
  std::string data;       ///< as the calls took it: a text in the system's code page with its zero
};

struct RegistryKey {
  std::u16string path;
  std::map<std::u16string, StoredValue> values;  ///< by their folded names, see FoldCase()
};

/// What a registry holds. A key is named by its whole path, such as "HKEY_CURRENT_USER\Software",
/// where several "\" count as one; names are found without regard to case and kept as they were
/// first written. The first name of a path is a hive, which is always there.
class RegistryTree {
 public:
  [[nodiscard]] bool Has(std::u16string_view path) const;
  /// The value of that name; null when it or its key is missing. Good until the next change.
  [[nodiscard]] const StoredValue* Find(std::u16string_view path, std::u16string_view name) const;
  /// The key and all keys below it, each behind its parent; all there are for an empty path. Good
  /// until the next change. A hive that nothing was written to is not among them.
  [[nodiscard]] std::vector<const RegistryKey*> KeysFrom(std::u16string_view path) const;

  /// Makes the key and its missing parents; whether it was missing.
  bool Make(std::u16string_view path);
  /// Makes the key, too, where it is missing.
  void Set(std::u16string_view path, std::u16string_view name, std::int32_t type,
           std::string_view data);
  /// Each tells whether there was such a one; a key goes with all that is below it.
  bool RemoveValue(std::u16string_view path, std::u16string_view name);
  bool RemoveKey(std::u16string_view path);

  /// As a text file in UTF-8, see docs/host-services/stand-ins.md.
  [[nodiscard]] std::string Bytes() const;
  /// What Bytes() has written; nothing where a line is damaged or missing.
  [[nodiscard]] static std::optional<RegistryTree> From(std::string_view bytes);

 private:
  std::map<std::u16string, RegistryKey> keys_;  // by their folded paths
};

/// The registry in one text file. Nothing is kept open between two calls, so any number of programs
/// and threads may use it. Each operation throws StoreFailure.
class RegistryStore {
 public:
  explicit RegistryStore(std::filesystem::path file) : file_(std::move(file)) {}

  /// What is there now; an empty registry where there is no file. Makes nothing, locks nothing.
  [[nodiscard]] RegistryTree Read() const;
  /// Makes all of `change` at once, after the changes of other programs and before any later one;
  /// makes the file and its folder, for the user alone, where there is something to be kept.
  /// A damaged file is left alone.
  void Change(const std::function<void(RegistryTree&)>& change) const;

 private:
  std::filesystem::path file_;
};

/// The store that the registry calls use: registry.txt in the folder of the user's data.
[[nodiscard]] RegistryStore UserRegistry();

/// The stand-in of the system's library over a store of its own.
[[nodiscard]] std::unique_ptr<Advapi32> MakeAdvapi32(const RegistryStore& store);

}  // namespace quorvane
