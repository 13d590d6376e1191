#include "tests/support/component/failing_allocations.h"

#include <atomic>
#include <cstdlib>
#include <string_view>

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

struct Replacement {
  std::string_view name;
  void* failing;
  void* real;
};

template <class Function>
void* Address(Function function) {
  return reinterpret_cast<void*>(function);
}

const Replacement kReplacements[] = {
    {"malloc", Address(Malloc), Address(&std::malloc)},
    {"calloc", Address(Calloc), Address(&std::calloc)},
    {"realloc", Address(Realloc), Address(&std::realloc)},
    {"HeapAlloc", Address(HeapAllocate), Address(&::HeapAlloc)},
    {"CoTaskMemAlloc", Address(TaskAllocate), Address(&::CoTaskMemAlloc)},
    {"SysAllocStringLen", Address(StringAllocate), Address(&::SysAllocStringLen)},
    {"TlsAlloc", Address(TakeTlsIndex), Address(&::TlsAlloc)},
    {"TlsSetValue", Address(SetTlsValue), Address(&::TlsSetValue)},
};

void Write(void** slot, void* address) {
  DWORD rights = 0;
  ::VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &rights);
  *slot = address;
  ::VirtualProtect(slot, sizeof *slot, rights, &rights);
}

// Calls `body` with the name and the slot of each import that has a name.
template <class Body>
void ForEachImport(HMODULE module, Body body) {
  auto* const image = reinterpret_cast<BYTE*>(module);
  const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS32*>(
      image + reinterpret_cast<const IMAGE_DOS_HEADER*>(image)->e_lfanew);
  const DWORD table =
      headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
  for (const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(image + table);
       library->Name != 0; ++library) {
    const auto* name =
        reinterpret_cast<const IMAGE_THUNK_DATA32*>(image + library->OriginalFirstThunk);
    auto* slot = reinterpret_cast<void**>(image + library->FirstThunk);
    for (; name->u1.AddressOfData != 0; ++name, ++slot) {
      if (IMAGE_SNAP_BY_ORDINAL32(name->u1.Ordinal)) continue;
      const auto* const entry =
          reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(image + name->u1.AddressOfData);
      body(std::string_view(reinterpret_cast<const char*>(entry->Name)), slot);
    }
  }
}

}  // namespace

FailingAllocations::FailingAllocations(HMODULE module, int first) : module_(module) {
  calls_left = first;
  failures = 0;
  ForEachImport(module_, [](std::string_view name, void** slot) {
    for (const Replacement& one : kReplacements) {
      if (one.name == name) Write(slot, one.failing);
    }
  });
}

FailingAllocations::~FailingAllocations() {
  ForEachImport(module_, [](std::string_view name, void** slot) {
    for (const Replacement& one : kReplacements) {
      if (one.name == name) Write(slot, one.real);
    }
  });
}

int FailingAllocations::Failures() { return failures; }

}  // namespace quorvane::component
