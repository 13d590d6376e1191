#include "platform/kernel32.h"

#include <cstring>

namespace quorvane {
namespace {

class PosixKernel32 final : public Kernel32 {
 public:
  void RtlMoveMemory(void* destination, const void* source, std::uint32_t length) override {
    if (length > 0) std::memmove(destination, source, length);
  }
};

}  // namespace

Kernel32& kernel32() {
  static PosixKernel32 instance;
  return instance;
}

}  // namespace quorvane
