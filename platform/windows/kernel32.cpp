#include "platform/kernel32.h"

#include <cstring>

namespace quorvane {
namespace {

class WindowsKernel32 final : public Kernel32 {
 public:
  // The system's own RtlMoveMemory is the C library's memmove under another name.
  void RtlMoveMemory(void* destination, const void* source, std::uint32_t length) override {
    if (length > 0) std::memmove(destination, source, length);
  }
};

}  // namespace

Kernel32& kernel32() {
  static WindowsKernel32 instance;
  return instance;
}

}  // namespace quorvane
