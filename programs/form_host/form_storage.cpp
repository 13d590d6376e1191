// The file of a form: reading it whole, replacing it whole.

#include <filesystem>
#include <fstream>
#include <system_error>

#include "programs/form_host/form_file.h"

namespace quorvane::programs {
namespace {

namespace fs = std::filesystem;

// No form comes near it; a file beyond it was named by mistake.
constexpr std::uintmax_t kLargestForm = 16ULL * 1024 * 1024;

fs::path PathOf(const std::string& utf8) {
  return fs::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string ReadWhole(const fs::path& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (status.type() == fs::file_type::not_found) throw FormFileError("there is no such file");
  if (error) throw FormFileError("it cannot be read: " + error.message());
  if (status.type() != fs::file_type::regular) throw FormFileError("it is not a file");
  if (fs::file_size(path, error) > kLargestForm) throw FormFileError("it is too large for a form");
  std::ifstream in(path, std::ios::binary);
  std::string bytes(std::istreambuf_iterator<char>(in), {});
  if (!in.is_open() || in.bad()) throw FormFileError("it cannot be read");
  return bytes;
}

// Takes the half-written file away again unless it has been put in its place.
class Draft {
 public:
  explicit Draft(fs::path path) : path_(std::move(path)) {}
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;
  ~Draft() {
    std::error_code ignored;
    fs::remove(path_, ignored);
  }

  void Write(const std::string& bytes, const fs::path& permissions_of) const {
    std::ofstream out(path_, std::ios::binary | std::ios::trunc);
    if (!out) throw FormFileError("no file can be made beside it");
    // Before the first byte: a form may hold a password.
    std::error_code no_old_file;
    const fs::file_status old = fs::status(permissions_of, no_old_file);
    if (fs::exists(old)) fs::permissions(path_, old.permissions(), no_old_file);
    out << bytes;
    out.close();
    if (!out) throw FormFileError("it cannot be written");
  }

  void MoveTo(const fs::path& place) const {
    std::error_code error;
    fs::rename(path_, place, error);
    if (error) throw FormFileError("it cannot be replaced: " + error.message());
  }

 private:
  fs::path path_;
};

template <class Body>
auto NamingTheFile(const std::string& file, Body body) {
  try {
    return body();
  } catch (const FormFileError& error) {
    throw FormFileError(file + ": " + error.what());
  }
}

}  // namespace

std::vector<FormEntry> LoadForm(const std::string& file) {
  return NamingTheFile(file, [&] { return ParseForm(ReadWhole(PathOf(file))); });
}

void SaveForm(const std::string& file, const std::vector<FormEntry>& entries) {
  NamingTheFile(file, [&] {
    // Through links: the file behind them is replaced, not the link.
    std::error_code error;
    const fs::path place = fs::weakly_canonical(PathOf(file), error);
    if (error || place.empty()) throw FormFileError("there is no such place");
    const fs::file_status old = fs::status(place, error);
    if (fs::is_directory(old)) throw FormFileError("it is not a file");
    // Not every system keeps such a file from being replaced.
    if (fs::exists(old) && (old.permissions() & fs::perms::owner_write) == fs::perms::none)
      throw FormFileError("it is read-only");
    fs::path beside = place;
    beside += ".saving";
    const Draft draft(beside);
    draft.Write(FormatForm(entries), place);
    draft.MoveTo(place);
  });
}

bool IsSamePlace(const std::string& file, const std::string& other) {
  std::error_code error;
  if (fs::equivalent(PathOf(file), PathOf(other), error)) return true;
  const fs::path place = fs::weakly_canonical(PathOf(file), error);
  return !error && place == fs::weakly_canonical(PathOf(other), error);
}

}  // namespace quorvane::programs
