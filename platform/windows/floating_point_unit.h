#pragma once

#include <cstdint>

namespace quorvane {

/// While it lives the calling thread's floating-point unit stands as Windows starts a thread: 53
/// binary digits, to the nearest, no exception raised. Hosts leave it as their libraries need it,
/// at 24 digits among others, and the system's own conversions then give other numbers. At the end
/// it stands as before, with the exceptions noted in it then, so that none of these calls' is
/// raised later in the host.
class FloatingPointUnit {
 public:
  [[gnu::noinline]] FloatingPointUnit();
  FloatingPointUnit(const FloatingPointUnit&) = delete;
  FloatingPointUnit& operator=(const FloatingPointUnit&) = delete;
  [[gnu::noinline]] ~FloatingPointUnit();

 private:
  struct Environment {
    std::uint32_t words[7];  // NOLINT(*-avoid-c-arrays): the processor's own layout
  };
  Environment host_;
  std::uint32_t host_vectors_ = 0;
};

}  // namespace quorvane
