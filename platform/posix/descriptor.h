#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <utility>

namespace quorvane {

/// Owns a file descriptor; negative is none.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() {
    if (*this) ::close(number_);
  }
  explicit operator bool() const { return number_ >= 0; }
  [[nodiscard]] int Number() const { return number_; }

 private:
  int number_ = -1;
};

/// Opens a regular file for reading, without waiting for the other end of what is a pipe. None,
/// with the reason in errno, when that fails: EOPNOTSUPP for what is no regular file.
[[nodiscard]] inline Descriptor OpenRegularFile(const char* path) {
  constexpr int kFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
  Descriptor file(static_cast<int>(TEMP_FAILURE_RETRY(::open(path, kFlags))));
  struct stat status {};
  if (!file || ::fstat(file.Number(), &status) != 0) return {};
  if (S_ISREG(status.st_mode)) return file;
  errno = EOPNOTSUPP;
  return {};
}

/// The run-time error number of a system error code (errno) that a file call failed with.
[[nodiscard]] std::int32_t FileErrorNumber(int system_code);

}  // namespace quorvane
