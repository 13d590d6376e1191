#include "tests/support/failing_memory.h"

#include <cstdlib>
#include <new>

namespace {

int allocations_until_failure = 0;  // 0: none fails
bool all_later_fail = false;
bool has_failed = false;
std::size_t bytes_taken = 0;

bool Fails() {
  if (has_failed && all_later_fail) return true;
  if (allocations_until_failure == 0 || --allocations_until_failure > 0) return false;
  has_failed = true;
  return true;
}

void* Allocate(std::size_t size) {
  bytes_taken += size;
  if (Fails()) throw std::bad_alloc();
  void* const memory = std::malloc(size > 0 ? size : 1);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace quorvane::testing {

void FailingMemory::FailAt(int n, bool and_all_later) {
  allocations_until_failure = n;
  all_later_fail = and_all_later;
  has_failed = false;
}

bool FailingMemory::Disarm() {
  const bool failed = has_failed;
  allocations_until_failure = 0;
  has_failed = false;
  return failed;
}

std::size_t FailingMemory::BytesTaken() { return bytes_taken; }

}  // namespace quorvane::testing
