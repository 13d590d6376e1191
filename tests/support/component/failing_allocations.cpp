#include "tests/support/component/failing_allocations.h"

#include <atomic>
#include <cstdlib>

namespace quorvane::component {
namespace {

std::atomic<int> calls_left{0};
std::atomic<int> failures{0};

bool Fails() {
  if (--calls_left > 0) return false;
  ++failures;
  return true;
}

void* __cdecl Malloc(std::size_t size) { return Fails() ? nullptr : std::malloc(size); }
void* __cdecl Calloc(std::size_t count, std::size_t size) {
  return Fails() ? nullptr : std::calloc(count, size);
}
void* __cdecl Realloc(void* block, std::size_t size) {
  return Fails() ? nullptr : std::realloc(block, size);
}
void* WINAPI HeapAllocate(HANDLE heap, DWORD flags, SIZE_T size) {
  return Fails() ? nullptr : ::HeapAlloc(heap, flags, size);
}
void* WINAPI TaskAllocate(SIZE_T size) { return Fails() ? nullptr : ::CoTaskMemAlloc(size); }
BSTR WINAPI StringAllocate(const OLECHAR* text, UINT size) {
  return Fails() ? nullptr : ::SysAllocStringLen(text, size);
}
DWORD WINAPI TakeTlsIndex() { return Fails() ? TLS_OUT_OF_INDEXES : ::TlsAlloc(); }
BOOL WINAPI SetTlsValue(DWORD index, void* value) {
  // Taking a value back needs no room.
  return value != nullptr && Fails() ? FALSE : ::TlsSetValue(index, value);
}

}  // namespace

FailingAllocations::FailingAllocations(HMODULE module, int first)
    : replaced_{{module, "malloc", Malloc},
                {module, "calloc", Calloc},
                {module, "realloc", Realloc},
                {module, "HeapAlloc", HeapAllocate},
                {module, "CoTaskMemAlloc", TaskAllocate},
                {module, "SysAllocStringLen", StringAllocate},
                {module, "TlsAlloc", TakeTlsIndex},
                {module, "TlsSetValue", SetTlsValue}} {
  calls_left = first;
  failures = 0;
}

int FailingAllocations::Failures() { return failures; }

}  // namespace quorvane::component
