#include "tests/support/component/failing_allocations.h"

#include <atomic>

namespace quorvane::component {
namespace {

std::atomic<int> calls_left{0};
std::atomic<int> failures{0};
std::atomic<bool> is_once{false};

bool Fails() {
  const int left = --calls_left;
  if (left > 0 || (left < 0 && is_once)) return false;
  ++failures;
  return true;
}

// What stood in each one's place, in their order: the system's own, or another replacement.
void* real[8]{};

template <class Function>
Function* As(void* address) {
  return reinterpret_cast<Function*>(address);
}

void* __cdecl Malloc(std::size_t size) {
  return Fails() ? nullptr : As<void* __cdecl(std::size_t)>(real[0])(size);
}
void* __cdecl Calloc(std::size_t count, std::size_t size) {
  return Fails() ? nullptr : As<void* __cdecl(std::size_t, std::size_t)>(real[1])(count, size);
}
void* __cdecl Realloc(void* block, std::size_t size) {
  return Fails() ? nullptr : As<void* __cdecl(void*, std::size_t)>(real[2])(block, size);
}
void* WINAPI HeapAllocate(HANDLE heap, DWORD flags, SIZE_T size) {
  return Fails() ? nullptr : As<void * WINAPI(HANDLE, DWORD, SIZE_T)>(real[3])(heap, flags, size);
}
void* WINAPI TaskAllocate(SIZE_T size) {
  return Fails() ? nullptr : As<void * WINAPI(SIZE_T)>(real[4])(size);
}
BSTR WINAPI StringAllocate(const OLECHAR* text, UINT size) {
  return Fails() ? nullptr : As<BSTR WINAPI(const OLECHAR*, UINT)>(real[5])(text, size);
}
DWORD WINAPI TakeTlsIndex() { return Fails() ? TLS_OUT_OF_INDEXES : As<DWORD WINAPI()>(real[6])(); }
BOOL WINAPI SetTlsValue(DWORD index, void* value) {
  // Taking a value back needs no room.
  return value != nullptr && Fails() ? FALSE : As<BOOL WINAPI(DWORD, void*)>(real[7])(index, value);
}

}  // namespace

FailingAllocations::FailingAllocations(HMODULE module, int first, Lasting lasting)
    : replaced_{{module, "malloc", Malloc},
                {module, "calloc", Calloc},
                {module, "realloc", Realloc},
                {module, "HeapAlloc", HeapAllocate},
                {module, "CoTaskMemAlloc", TaskAllocate},
                {module, "SysAllocStringLen", StringAllocate},
                {module, "TlsAlloc", TakeTlsIndex},
                {module, "TlsSetValue", SetTlsValue}} {
  for (int i = 0; i < 8; ++i) real[i] = replaced_[i].Real();
  is_once = lasting == Lasting::kOnce;
  calls_left = first;
  failures = 0;
}

int FailingAllocations::Failures() { return failures; }

}  // namespace quorvane::component
