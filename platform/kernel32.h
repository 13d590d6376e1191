#pragma once

#include <cstdint>

namespace quorvane {

/// Calls of the system's base library, under their own names; results are handed back raw.
class Kernel32 {
 public:
  virtual ~Kernel32() = default;

  /// Copies `length` bytes; the blocks may overlap. Neither pointer may be null unless the length
  /// is 0.
  virtual void RtlMoveMemory(void* destination, const void* source, std::uint32_t length) = 0;
};

[[nodiscard]] Kernel32& kernel32();

}  // namespace quorvane
