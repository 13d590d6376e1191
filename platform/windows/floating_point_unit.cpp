#include "platform/windows/floating_point_unit.h"

#include "platform/windows/os_headers.h"

namespace quorvane {
namespace {

constexpr std::uint16_t kControlWord = 0x027F;
constexpr std::uint32_t kVectorControl = 0x1F80;

// The second unit for floating point, in processors that have one, has a control word of its own.
bool HasVectorControl() { return ::IsProcessorFeaturePresent(PF_XMMI_INSTRUCTIONS_AVAILABLE) != 0; }

void SetVectorControl(std::uint32_t control) { asm volatile("ldmxcsr %0" : : "m"(control)); }

}  // namespace

// Out of line: at a call the compiler has nothing in the unit's registers, whose state is part of
// what is kept.
// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): the instruction fills it
FloatingPointUnit::FloatingPointUnit() {
  asm volatile("fnstenv %0" : "=m"(host_));
  asm volatile("fnclex\n\tfldcw %0" : : "m"(kControlWord));
  if (!HasVectorControl()) return;
  asm volatile("stmxcsr %0" : "=m"(host_vectors_));
  SetVectorControl(kVectorControl);
}

FloatingPointUnit::~FloatingPointUnit() {
  asm volatile("fldenv %0" : : "m"(host_));
  if (HasVectorControl()) SetVectorControl(host_vectors_);
}

}  // namespace quorvane
