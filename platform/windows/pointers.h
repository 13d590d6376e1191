#pragma once

#include "platform/address32.h"

namespace quorvane {

// On this platform an address is the pointer itself, which holds on 32-bit Windows only.
static_assert(sizeof(void*) == sizeof(Address32));

[[nodiscard]] inline Address32 AddressOfPointer(const void* pointer) {
  return static_cast<Address32>(reinterpret_cast<std::uintptr_t>(pointer));
}

template <class Type = void>
[[nodiscard]] Type* PointerTo(Address32 address) {
  return reinterpret_cast<Type*>(static_cast<std::uintptr_t>(address));
}

}  // namespace quorvane
