#include "platform/posix/sqlite_database.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <chrono>
#include <thread>

namespace quorvane {
namespace {

using namespace std::chrono_literals;

// Longer than any honest writer holds the file.
constexpr auto kPatience = 30s;
constexpr auto kPause = 2ms;

// Tries again while other programs hold the file. The database's own patience is no use here: it
// answers at once, without waiting, while another program makes, recovers or takes away the log.
template <class Attempt>
int Patiently(Attempt attempt) {
  const auto end = std::chrono::steady_clock::now() + kPatience;
  int result = attempt();
  while (result == SQLITE_BUSY && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(kPause);
    result = attempt();
  }
  return result;
}

[[noreturn]] void Fail(sqlite3* connection) {
  throw DatabaseFailure(connection != nullptr ? ::sqlite3_errmsg(connection) : "out of memory");
}

}  // namespace

SqliteDatabase::SqliteDatabase(const std::filesystem::path& file) {
  const int created = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (created >= 0) ::close(created);
  const int result = ::sqlite3_open_v2(file.c_str(), &connection_,
                                       SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOFOLLOW, nullptr);
  if (result == SQLITE_OK) return;
  const std::string reason = connection_ != nullptr ? ::sqlite3_errmsg(connection_) : "";
  ::sqlite3_close(connection_);
  throw DatabaseFailure(reason);
}

SqliteDatabase::~SqliteDatabase() { ::sqlite3_close(connection_); }

void SqliteDatabase::Run(const char* statements) {
  const int result =
      Patiently([&] { return ::sqlite3_exec(connection_, statements, nullptr, nullptr, nullptr); });
  if (result != SQLITE_OK) Fail(connection_);
}

std::int64_t SqliteDatabase::LastInsertedRow() const {
  return ::sqlite3_last_insert_rowid(connection_);
}

SqliteStatement::SqliteStatement(SqliteDatabase& database, const char* text)
    : connection_(database.connection_) {
  Check(
      Patiently([&] { return ::sqlite3_prepare_v2(connection_, text, -1, &statement_, nullptr); }));
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
  const int result = Patiently([&] {
    const int outcome = ::sqlite3_step(statement_);
    // Nothing was done or read yet: a row, once there, is followed by the next without a new lock.
    if (outcome == SQLITE_BUSY) ::sqlite3_reset(statement_);
    return outcome;
  });
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
