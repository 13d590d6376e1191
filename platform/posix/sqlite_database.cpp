#include "platform/posix/sqlite_database.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

namespace quorvane {
namespace {

// Longer than any honest writer holds the file.
constexpr int kPatienceInMilliseconds = 30000;

[[noreturn]] void Fail(sqlite3* connection) {
  throw DatabaseFailure(connection != nullptr ? ::sqlite3_errmsg(connection) : "out of memory");
}

}  // namespace

SqliteDatabase::SqliteDatabase(const std::filesystem::path& file) {
  const int created = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (created >= 0) ::close(created);
  const int result = ::sqlite3_open_v2(file.c_str(), &connection_,
                                       SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOFOLLOW, nullptr);
  if (result == SQLITE_OK) {
    ::sqlite3_busy_timeout(connection_, kPatienceInMilliseconds);
    return;
  }
  const std::string reason = connection_ != nullptr ? ::sqlite3_errmsg(connection_) : "";
  ::sqlite3_close(connection_);
  throw DatabaseFailure(reason);
}

SqliteDatabase::~SqliteDatabase() { ::sqlite3_close(connection_); }

void SqliteDatabase::Run(const char* statements) {
  if (::sqlite3_exec(connection_, statements, nullptr, nullptr, nullptr) != SQLITE_OK) {
    Fail(connection_);
  }
}

std::int64_t SqliteDatabase::LastInsertedRow() const {
  return ::sqlite3_last_insert_rowid(connection_);
}

SqliteStatement::SqliteStatement(SqliteDatabase& database, const char* text)
    : connection_(database.connection_) {
  Check(::sqlite3_prepare_v2(connection_, text, -1, &statement_, nullptr));
}

SqliteStatement::~SqliteStatement() { ::sqlite3_finalize(statement_); }

void SqliteStatement::Check(int result) const {
  if (result != SQLITE_OK) Fail(connection_);
}

SqliteStatement& SqliteStatement::Bind(std::int64_t value) {
  Check(::sqlite3_bind_int64(statement_, ++parameter_, value));
  return *this;
}

SqliteStatement& SqliteStatement::Bind(std::u16string_view text) {
  Check(::sqlite3_bind_text64(statement_, ++parameter_, reinterpret_cast<const char*>(text.data()),
                              text.size() * sizeof(char16_t), SQLITE_TRANSIENT, SQLITE_UTF16));
  return *this;
}

SqliteStatement& SqliteStatement::BindBytes(std::string_view bytes) {
  // A null pointer would bind no value rather than no bytes.
  const char* const data = bytes.empty() ? "" : bytes.data();
  Check(::sqlite3_bind_blob64(statement_, ++parameter_, data, bytes.size(), SQLITE_TRANSIENT));
  return *this;
}

bool SqliteStatement::Step() {
  const int result = ::sqlite3_step(statement_);
  if (result != SQLITE_ROW && result != SQLITE_DONE) Fail(connection_);
  return result == SQLITE_ROW;
}

std::int64_t SqliteStatement::Integer(int column) const {
  return ::sqlite3_column_int64(statement_, column);
}

std::string SqliteStatement::Bytes(int column) const {
  const auto* const data = static_cast<const char*>(::sqlite3_column_blob(statement_, column));
  const int size = ::sqlite3_column_bytes(statement_, column);
  return data != nullptr ? std::string(data, static_cast<std::size_t>(size)) : std::string();
}

SqliteTransaction::SqliteTransaction(SqliteDatabase& database) : database_(database) {
  database_.Run("BEGIN IMMEDIATE");
}

SqliteTransaction::~SqliteTransaction() {
  if (!open_) return;
  try {
    database_.Run("ROLLBACK");
  } catch (const DatabaseFailure&) {
    // The database has undone it by itself.
  }
}

void SqliteTransaction::Commit() {
  database_.Run("COMMIT");
  open_ = false;
}

}  // namespace quorvane
