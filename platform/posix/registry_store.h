#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/posix/sqlite_database.h"

namespace quorvane {

struct RegistryValue {
  std::int32_t type = 0;
  std::string data;
};

/// The registry in one SQLite file: keys by their parent and name, values by their key and name.
///
/// Names are compared without regard to case and kept as they were first written. A key is told by
/// a number of the store's own; the top ones, hives, always exist. Several programs may use a store
/// at a time: each operation is one transaction, and a writer waits for the one before it. Each
/// operation throws DatabaseFailure when the file cannot be read or written.
class RegistryStore {
 public:
  using Key = std::int64_t;

  /// Opens the file; makes it and its folder where missing.
  explicit RegistryStore(const std::filesystem::path& file);

  /// The key of a hive, such as "HKEY_CURRENT_USER".
  [[nodiscard]] Key Hive(std::u16string_view name);
  /// The key at the end of a path of names with "\" between them; nothing when one is missing.
  /// Several "\" count as one; an empty path is the key itself.
  [[nodiscard]] std::optional<Key> Find(Key from, std::u16string_view path);
  struct Made {
    Key key = 0;
    bool is_new = false;
  };
  /// The same, but makes what is missing.
  [[nodiscard]] Made FindOrMake(Key from, std::u16string_view path);

  [[nodiscard]] bool Exists(Key key);
  [[nodiscard]] std::optional<RegistryValue> Value(Key key, std::u16string_view name);
  void SetValue(Key key, std::u16string_view name, const RegistryValue& value);

 private:
  [[nodiscard]] std::optional<Key> Child(Key parent, std::u16string_view name);
  [[nodiscard]] Key MakeChild(Key parent, std::u16string_view name);

  std::unique_ptr<SqliteDatabase> database_;
};

}  // namespace quorvane
