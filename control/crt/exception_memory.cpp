// The memory of thrown exceptions, in place of the run-time library's own way, which takes a
// reserve of 36 KB at each load, with a lock around it, and never gives either back.
//
// Here the reserve is a few places in the module itself: enough to throw std::bad_alloc and the
// run-time error that is made of it, on several threads at once, when no other memory is left.

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <exception>

#include "platform/windows/os_headers.h"

namespace {

// In front of the exception lies a header of the run-time library, which finds it by its distance
// from the exception. It takes less than this.
constexpr std::size_t kHeader = 128;

struct alignas(8) Reserve {
  std::byte bytes[kHeader + 128];
};

constinit Reserve reserves[16]{};
constinit LONG volatile is_taken[16]{};

void* TakeReserve(std::size_t size) {
  if (size > sizeof(Reserve)) return nullptr;
  for (std::size_t i = 0; i < 16; ++i) {
    if (::InterlockedExchange(&is_taken[i], 1) == 0) return &reserves[i];
  }
  return nullptr;
}

bool GiveBackReserve(const void* block) {
  for (std::size_t i = 0; i < 16; ++i) {
    if (block != &reserves[i]) continue;
    ::InterlockedExchange(&is_taken[i], 0);
    return true;
  }
  return false;
}

}  // namespace

extern "C" {

void* __cxa_allocate_exception(std::size_t size) noexcept;
void __cxa_free_exception(void* exception) noexcept;

void* __cxa_allocate_exception(std::size_t size) noexcept {
  const std::size_t whole = kHeader + size;
  void* block = std::malloc(whole);
  if (block == nullptr) block = TakeReserve(whole);
  if (block == nullptr) std::terminate();
  std::memset(block, 0, kHeader);
  return static_cast<std::byte*>(block) + kHeader;
}

void __cxa_free_exception(void* exception) noexcept {
  void* const block = static_cast<std::byte*>(exception) - kHeader;
  if (!GiveBackReserve(block)) std::free(block);
}

}  // extern "C"
