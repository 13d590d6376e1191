#pragma once

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace quorvane {

/// The database could not do what was asked; the text says why.
struct DatabaseFailure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// One connection to an SQLite database file. Each operation throws DatabaseFailure. While other
/// programs hold the file, it waits for up to 30 seconds; statements that are run together are then
/// run again from the first, so outside a transaction each must bear being run twice.
class SqliteDatabase {
 public:
  /// Opens the file, or makes it in an existing folder, readable for the user alone.
  explicit SqliteDatabase(const std::filesystem::path& file);
  ~SqliteDatabase();
  SqliteDatabase(const SqliteDatabase&) = delete;
  SqliteDatabase& operator=(const SqliteDatabase&) = delete;

  /// Runs statements that give no rows.
  void Run(const char* statements);
  [[nodiscard]] std::int64_t LastInsertedRow() const;

 private:
  friend class SqliteStatement;
  sqlite3* connection_ = nullptr;
};

/// One statement, with its parameters bound in order by Bind() and its rows read by Step().
class SqliteStatement {
 public:
  SqliteStatement(SqliteDatabase& database, const char* text);
  ~SqliteStatement();
  SqliteStatement(const SqliteStatement&) = delete;
  SqliteStatement& operator=(const SqliteStatement&) = delete;

  SqliteStatement& Bind(std::int64_t value);
  SqliteStatement& Bind(std::u16string_view text);
  SqliteStatement& BindBytes(std::string_view bytes);

  /// Goes to the next row; false when there is none.
  bool Step();
  [[nodiscard]] std::int64_t Integer(int column) const;
  [[nodiscard]] std::string Bytes(int column) const;

 private:
  void Check(int result) const;

  sqlite3* connection_;
  sqlite3_stmt* statement_ = nullptr;
  int parameter_ = 0;
};

/// A transaction that shuts out other writers from its start; undone unless Commit() is reached.
class SqliteTransaction {
 public:
  explicit SqliteTransaction(SqliteDatabase& database);
  ~SqliteTransaction();
  SqliteTransaction(const SqliteTransaction&) = delete;
  SqliteTransaction& operator=(const SqliteTransaction&) = delete;
  void Commit();

 private:
  SqliteDatabase& database_;
  bool open_ = true;
};

}  // namespace quorvane
