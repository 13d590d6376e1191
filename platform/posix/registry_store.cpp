#include "platform/posix/registry_store.h"

#include <vector>

#include "platform/posix/atomic_file.h"
#include "platform/posix/case_fold.h"

namespace quorvane {
namespace {

constexpr RegistryStore::Key kTop = 0;
constexpr std::int64_t kFormat = 1;

constexpr const char* kTables = R"(
  CREATE TABLE key(
    id INTEGER PRIMARY KEY, parent INTEGER NOT NULL, name TEXT NOT NULL, folded TEXT NOT NULL,
    UNIQUE(parent, folded));
  CREATE TABLE value(
    key INTEGER NOT NULL, name TEXT NOT NULL, folded TEXT NOT NULL,
    type INTEGER NOT NULL, data BLOB NOT NULL,
    PRIMARY KEY(key, folded)) WITHOUT ROWID;
  PRAGMA user_version = 1;
)";

std::int64_t FormatOf(SqliteDatabase& database) {
  SqliteStatement statement(database, "PRAGMA user_version");
  statement.Step();
  return statement.Integer(0);
}

void PrepareTables(SqliteDatabase& database) {
  if (FormatOf(database) == kFormat) return;
  SqliteTransaction transaction(database);
  // Another program may have been faster.
  if (FormatOf(database) == 0) database.Run(kTables);
  if (FormatOf(database) != kFormat) throw DatabaseFailure("a format of a later version");
  transaction.Commit();
}

std::vector<std::u16string_view> NamesOf(std::u16string_view path) {
  std::vector<std::u16string_view> names;
  while (!path.empty()) {
    const std::size_t end = std::min(path.find(u'\\'), path.size());
    if (end > 0) names.push_back(path.substr(0, end));
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return names;
}

}  // namespace

RegistryStore::RegistryStore(const std::filesystem::path& file) {
  CreatePrivateFolder(file.parent_path());
  database_ = std::make_unique<SqliteDatabase>(file);
  // Readers go on while a writer is at work; what is written reaches the disk a little later, as
  // with the platform's own registry, but always as a whole.
  database_->Run("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL");
  PrepareTables(*database_);
}

std::optional<RegistryStore::Key> RegistryStore::Child(Key parent, std::u16string_view name) {
  SqliteStatement statement(*database_, "SELECT id FROM key WHERE parent = ? AND folded = ?");
  statement.Bind(parent).Bind(FoldCase(name));
  if (!statement.Step()) return std::nullopt;
  return statement.Integer(0);
}

RegistryStore::Key RegistryStore::MakeChild(Key parent, std::u16string_view name) {
  SqliteStatement statement(*database_, "INSERT INTO key(parent, name, folded) VALUES(?, ?, ?)");
  statement.Bind(parent).Bind(name).Bind(FoldCase(name)).Step();
  return database_->LastInsertedRow();
}

RegistryStore::Key RegistryStore::Hive(std::u16string_view name) {
  if (const auto key = Child(kTop, name)) return *key;
  return FindOrMake(kTop, name).key;
}

std::optional<RegistryStore::Key> RegistryStore::Find(Key from, std::u16string_view path) {
  Key key = from;
  for (const std::u16string_view name : NamesOf(path)) {
    const auto child = Child(key, name);
    if (!child) return std::nullopt;
    key = *child;
  }
  return key;
}

RegistryStore::Made RegistryStore::FindOrMake(Key from, std::u16string_view path) {
  if (const auto key = Find(from, path)) return {*key, false};
  SqliteTransaction transaction(*database_);
  Made made{from, false};
  for (const std::u16string_view name : NamesOf(path)) {
    const auto child = Child(made.key, name);
    made = child ? Made{*child, false} : Made{MakeChild(made.key, name), true};
  }
  transaction.Commit();
  return made;
}

bool RegistryStore::Exists(Key key) {
  SqliteStatement statement(*database_, "SELECT 1 FROM key WHERE id = ?");
  return statement.Bind(key).Step();
}

std::optional<RegistryValue> RegistryStore::Value(Key key, std::u16string_view name) {
  SqliteStatement statement(*database_,
                            "SELECT type, data FROM value WHERE key = ? AND folded = ?");
  if (!statement.Bind(key).Bind(FoldCase(name)).Step()) return std::nullopt;
  return RegistryValue{static_cast<std::int32_t>(statement.Integer(0)), statement.Bytes(1)};
}

void RegistryStore::SetValue(Key key, std::u16string_view name, const RegistryValue& value) {
  SqliteStatement statement(*database_,
                            "INSERT INTO value(key, name, folded, type, data) VALUES(?, ?, ?, ?, ?)"
                            " ON CONFLICT(key, folded) DO UPDATE"
                            " SET type = excluded.type, data = excluded.data");
  statement.Bind(key).Bind(name).Bind(FoldCase(name)).Bind(value.type).BindBytes(value.data).Step();
}

}  // namespace quorvane
