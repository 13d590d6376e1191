#include "platform/posix/atomic_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <system_error>

namespace quorvane {
namespace {

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() { Close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  [[nodiscard]] int Number() const { return number_; }
  bool Close() {
    const int number = number_;
    number_ = -1;
    return number < 0 || ::close(number) == 0;
  }

 private:
  int number_;
};

std::filesystem::path Target(const std::filesystem::path& file) {
  std::error_code failed;
  auto target = std::filesystem::weakly_canonical(std::filesystem::absolute(file, failed), failed);
  return failed ? file : target;
}

bool WriteAll(int number, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(number, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// A new file beside the target that no other writer uses, with the permissions of any new file.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::filesystem::path& target)
      : descriptor_(Create(target, path_)), exists_(descriptor_.Number() >= 0) {}
  ~TemporaryFile() {
    if (exists_) ::unlink(path_.c_str());
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  bool TakePermissionsOf(const std::filesystem::path& target) {
    struct stat status {};
    if (::stat(target.c_str(), &status) != 0) return true;
    return ::fchmod(descriptor_.Number(), status.st_mode & 07777U) == 0;
  }
  bool Store(std::string_view bytes) {
    return WriteAll(descriptor_.Number(), bytes) && ::fsync(descriptor_.Number()) == 0 &&
           descriptor_.Close();
  }
  bool MoveTo(const std::filesystem::path& target) {
    exists_ = ::rename(path_.c_str(), target.c_str()) != 0;
    return !exists_;
  }

 private:
  // A name that is taken is one that a program of the same number left behind when it broke down:
  // in a container every first program has the number 1.
  static int Create(const std::filesystem::path& target, std::string& path) {
    static std::atomic<unsigned> count = 0;
    int created = -1;
    do {
      path = target.native() + "." + std::to_string(::getpid()) + "." + std::to_string(++count);
      created = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    } while (created < 0 && errno == EEXIST);
    return created;
  }

  std::string path_;
  Descriptor descriptor_;
  bool exists_;
};

}  // namespace

void CreatePrivateFolder(const std::filesystem::path& folder) {
  std::error_code ignored;
  if (folder.empty() || std::filesystem::exists(folder, ignored)) return;
  CreatePrivateFolder(folder.parent_path());
  ::mkdir(folder.c_str(), 0700);
}

std::optional<std::string> ReadWholeFile(const std::filesystem::path& file) {
  // Not to be held up by a pipe that nobody writes to.
  const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status {};
  if (descriptor.Number() < 0 || ::fstat(descriptor.Number(), &status) != 0 ||
      !S_ISREG(status.st_mode)) {
    return std::nullopt;
  }
  std::string bytes;
  std::array<char, 8192> room{};
  for (;;) {
    const ssize_t count = ::read(descriptor.Number(), room.data(), room.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::nullopt;
    if (count == 0) return bytes;
    bytes.append(room.data(), static_cast<std::size_t>(count));
  }
}

bool ReplaceFile(const std::filesystem::path& file, std::string_view bytes) {
  const std::filesystem::path target = Target(file);
  TemporaryFile temporary(target);
  return temporary.TakePermissionsOf(target) && temporary.Store(bytes) && temporary.MoveTo(target);
}

FolderLock::FolderLock(const std::filesystem::path& file)
    : folder_(::open(Target(file).parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  while (folder_ >= 0 && ::flock(folder_, LOCK_EX) != 0 && errno == EINTR) {
  }
}

FolderLock::~FolderLock() {
  if (folder_ >= 0) ::close(folder_);
}

}  // namespace quorvane
