#pragma once

#include <unistd.h>

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

}  // namespace quorvane
