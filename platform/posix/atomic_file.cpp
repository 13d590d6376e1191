#include "platform/posix/atomic_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <string_view>
#include <thread>
#include <utility>

#include "platform/posix/descriptor.h"

namespace quorvane {
namespace {

constexpr int kMostAttempts = 5000;
constexpr auto kPause = std::chrono::milliseconds(2);
constexpr int kMostLinks = 40;

// The file that a name leads to, whether it is there or not.
int FollowLinks(std::filesystem::path& file) {
  for (int links = 0; links < kMostLinks; ++links) {
    std::error_code failed;
    const auto target = std::filesystem::read_symlink(file, failed);
    if (failed) return failed.value() == EINVAL || failed.value() == ENOENT ? 0 : failed.value();
    file = file.parent_path() / target;
  }
  return ELOOP;
}

int WriteAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return written < 0 ? errno : EIO;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
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

  // In the place of `file`, whose status is given if it is there.
  int Replace(const std::filesystem::path& file, const struct stat* status,
              std::string_view bytes) {
    const int descriptor = descriptor_.Number();
    if (status != nullptr) {
      // Only the superuser gives files away; everybody may give them to a group of his own.
      const bool given = ::fchown(descriptor, status->st_uid, status->st_gid) == 0 ||
                         ::fchown(descriptor, ::geteuid(), status->st_gid) == 0;
      const unsigned mode = status->st_mode & (given ? 07777U : 0777U);
      if (::fchmod(descriptor, mode) != 0) return errno;
    }
    if (const int error = WriteAll(descriptor, bytes); error != 0) return error;
    if (::fsync(descriptor) != 0 || ::rename(path_.c_str(), file.c_str()) != 0) return errno;
    held_ = false;
    return 0;
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
    if (::flock(descriptor_.Number(), LOCK_EX | LOCK_NB) != 0) return errno;
    if (::fstat(descriptor_.Number(), &own) != 0) return errno;
    if (::lstat(path_.c_str(), &named) != 0) return errno == ENOENT ? EAGAIN : errno;
    return own.st_ino == named.st_ino && own.st_dev == named.st_dev ? 0 : EAGAIN;
  }

  std::string path_;
  Descriptor descriptor_;
  bool held_ = false;
};

}  // namespace

void CreatePrivateFolder(const std::filesystem::path& folder) {
  const bool lacks_parent = ::mkdir(folder.c_str(), 0700) != 0 && errno == ENOENT;
  if (!lacks_parent || !folder.has_relative_path()) return;
  CreatePrivateFolder(folder.parent_path());
  ::mkdir(folder.c_str(), 0700);
}

int ReadFile(const std::filesystem::path& file, std::optional<std::string>& bytes) {
  bytes.reset();
  // Not to be held up by a pipe that nobody writes to.
  const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat status {};
  if (!descriptor || ::fstat(descriptor.Number(), &status) != 0) return errno;
  if (!S_ISREG(status.st_mode)) return EINVAL;
  std::string read;
  std::array<char, 8192> room{};
  for (;;) {
    const ssize_t count = ::read(descriptor.Number(), room.data(), room.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    if (count == 0) break;
    read.append(room.data(), static_cast<std::size_t>(count));
  }
  bytes = std::move(read);
  return 0;
}

int ChangeFile(const std::filesystem::path& file, unsigned mode, const FileChange& change) {
  std::filesystem::path target = file;
  if (const int error = FollowLinks(target); error != 0) return error;
  struct stat status {};
  NextFile next(target);
  const bool is_new = ::stat(target.c_str(), &status) != 0;
  if (const int error = next.Hold(is_new ? mode : 0600); error != 0) return error;
  const int seen = ::stat(target.c_str(), &status) == 0 ? 0 : errno;
  if (seen == 0 && ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) return errno;
  std::optional<std::string> before;
  const int error = ReadFile(target, before);
  // There and then not: a file whose bytes are not known is not to be replaced.
  if (error != seen || (error != 0 && error != ENOENT)) return error != 0 ? error : seen;
  const auto after = change(before);
  if (!after) return EBADMSG;
  if (*after == before.value_or("")) return 0;
  return next.Replace(target, before ? &status : nullptr, *after);
}

}  // namespace quorvane
