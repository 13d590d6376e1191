// The memory of thrown exceptions, in place of the run-time library's own way, which takes a
// reserve of 36 KB at each load, with a lock around it, and never gives either back.
//
// Here an exception that finds no memory lies in the thread's reserve.

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <exception>

#include "control/crt/thread_reserve.h"

using quorvane::component::GiveBackReservedException;
using quorvane::component::LeaveReserve;
using quorvane::component::TakeReservedException;

namespace {

// In front of the exception lies a header of the run-time library, which finds it by its distance
// from the exception. It takes less than this.
constexpr std::size_t kHeader = 128;

}  // namespace

extern "C" {

void* __cxa_allocate_exception(std::size_t size) noexcept;
void __cxa_free_exception(void* exception) noexcept;

void* __cxa_allocate_exception(std::size_t size) noexcept {
  const std::size_t whole = kHeader + size;
  void* block = std::malloc(whole);
  if (block == nullptr) block = TakeReservedException(whole);
  if (block == nullptr) std::terminate();
  std::memset(block, 0, kHeader);
  return static_cast<std::byte*>(block) + kHeader;
}

void __cxa_free_exception(void* exception) noexcept {
  void* const block = static_cast<std::byte*>(exception) - kHeader;
  if (!GiveBackReservedException(block)) std::free(block);
  LeaveReserve();
}

}  // extern "C"
