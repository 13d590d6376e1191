#include "runtime/vectors.h"

namespace quorvane {

bool HasVectors() noexcept {
#if defined(__i386__)
  // The answer is kept: on a virtual machine the processor's own takes thousands of cycles.
  static const bool kHas = [] {
    unsigned leaf = 1;
    unsigned subleaf = 0;
    unsigned features = 0;
    asm volatile("cpuid" : "+a"(leaf), "+c"(subleaf), "=d"(features) : : "ebx");
    constexpr unsigned kSse2 = 1U << 26;
    return (features & kSse2) != 0;
  }();
  return kHas;
#else
  return true;
#endif
}

}  // namespace quorvane
