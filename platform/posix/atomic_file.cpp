#include "platform/posix/atomic_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <string_view>
#include <thread>

#include "platform/posix/descriptor.h"

namespace quorvane {
namespace {

constexpr int kMostAttempts = 5000;
constexpr auto kPause = std::chrono::milliseconds(2);
constexpr int kMostLinks = 40;

[[noreturn]] void Fail(const std::filesystem::path& file, int error) {
  throw StoreFailure(file.native() + ": " + std::strerror(error));
}

// The file that a name leads to, whether it is there or not.
std::filesystem::path TargetOf(std::filesystem::path file) {
  for (int links = 0; links < kMostLinks; ++links) {
    std::error_code failed;
    const auto target = std::filesystem::read_symlink(file, failed);
    if (failed.value() == EINVAL || failed.value() == ENOENT) return file;
    if (failed) Fail(file, failed.value());
    file = file.parent_path() / target;
  }
  Fail(file, ELOOP);
}

bool WriteAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = TEMP_FAILURE_RETRY(::write(descriptor, bytes.data(), bytes.size()));
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// NAME.new, made by this object and locked. A file of that name that nobody has locked was left
// behind; one that has been locked is looked at again by its name, which may lead elsewhere by now.
class NextFile {
 public:
  explicit NextFile(const std::filesystem::path& file) : path_(file.native() + ".new") {}
  NextFile(const NextFile&) = delete;
  NextFile& operator=(const NextFile&) = delete;
  ~NextFile() {
    if (held_) ::unlink(path_.c_str());
  }

  // Tries again as long as others may be at work.
  int Hold(unsigned mode) {
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
      if (attempt > 0) std::this_thread::sleep_for(kPause);
      int error = Open(O_WRONLY | O_CREAT | O_EXCL, mode);
      held_ = error == 0;
      if (held_) error = Lock();
      if (error == 0) return 0;
      if (error == EAGAIN) held_ = false;  // whoever holds it takes it for a left one
      if (error == EEXIST && Open(O_RDONLY | O_NONBLOCK, 0) == 0 && Lock() == 0) {
        ::unlink(path_.c_str());
      }
      if (error != EAGAIN && error != EEXIST) return error;
    }
    return EAGAIN;
  }

  // In the place of `file`, whose status is given if it is there; false where that fails.
  bool Replace(const std::filesystem::path& file, const struct stat* status,
               std::string_view bytes) {
    const int descriptor = descriptor_.Number();
    if (status != nullptr) {
      // Only the superuser gives files away; everybody may give them to a group of his own.
      const bool given = ::fchown(descriptor, status->st_uid, status->st_gid) == 0 ||
                         ::fchown(descriptor, ::geteuid(), status->st_gid) == 0;
      const unsigned mode = status->st_mode & (given ? 07777U : 0777U);
      if (::fchmod(descriptor, mode) != 0) return false;
    }
    if (!WriteAll(descriptor, bytes) || ::fsync(descriptor) != 0) return false;
    held_ = ::rename(path_.c_str(), file.c_str()) != 0;
    return !held_;
  }

 private:
  int Open(int flags, unsigned mode) {
    const int opened = ::open(path_.c_str(), flags | O_NOFOLLOW | O_CLOEXEC, mode);
    const int error = opened < 0 ? errno : 0;
    descriptor_ = Descriptor(opened);
    return error;
  }

  [[nodiscard]] int Lock() const {
    struct stat own {};
    struct stat named {};
    const int descriptor = descriptor_.Number();
    if (::flock(descriptor, LOCK_EX | LOCK_NB) != 0 || ::fstat(descriptor, &own) != 0) return errno;
    if (::lstat(path_.c_str(), &named) != 0) return errno == ENOENT ? EAGAIN : errno;
    return own.st_ino == named.st_ino && own.st_dev == named.st_dev ? 0 : EAGAIN;
  }

  std::string path_;
  Descriptor descriptor_;
  bool held_ = false;
};

}  // namespace

void CreatePrivateFolder(const std::filesystem::path& folder) {
  std::filesystem::path made;
  for (const auto& name : folder) ::mkdir((made /= name).c_str(), 0700);
}

std::optional<std::string> ReadFile(const std::filesystem::path& file) {
  const Descriptor descriptor = OpenRegularFile(file.c_str());
  if (!descriptor && (errno == ENOENT || errno == ENOTDIR)) return std::nullopt;
  if (!descriptor) Fail(file, errno);
  std::string bytes;
  std::array<char, 8192> room{};
  for (;;) {
    const ssize_t count = TEMP_FAILURE_RETRY(::read(descriptor.Number(), room.data(), room.size()));
    if (count < 0) Fail(file, errno);
    if (count == 0) return bytes;
    bytes.append(room.data(), static_cast<std::size_t>(count));
  }
}

void ChangeFile(const std::filesystem::path& file, unsigned mode, const FileChange& change) {
  const std::filesystem::path target = TargetOf(file);
  struct stat status {};
  const bool is_new = ::stat(target.c_str(), &status) != 0;
  NextFile next(target);
  if (const int error = next.Hold(is_new ? mode : 0600); error != 0) Fail(file, error);
  const bool is_there = ::stat(target.c_str(), &status) == 0;
  if (!is_there && errno != ENOENT) Fail(file, errno);
  if (is_there && ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) Fail(file, errno);
  const auto before = ReadFile(target);
  // There and then not: a file whose bytes are not known is not to be replaced.
  if (before.has_value() != is_there) Fail(file, ENOENT);
  const std::string after = change(before);
  if (after == before.value_or("")) return;
  if (!next.Replace(target, is_there ? &status : nullptr, after)) Fail(file, errno);
}

}  // namespace quorvane
