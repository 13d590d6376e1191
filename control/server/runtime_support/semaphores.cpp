// The compiler's run-time library makes semaphores for its own locks and never closes them: a host
// would lose a handle with each load of the module. All static code of the module reaches the call
// through one pointer, which is ours, so that the handles are known and are closed at unload.

#include "control/server/runtime_support/semaphores.h"

#include "platform/windows/os_headers.h"

namespace {

// The run-time library has a handful of locks. A handle beyond is lost, as it would be without
// this.
constexpr LONG kLimit = 16;

constinit HANDLE semaphores[kLimit]{};
constinit LONG volatile count = 0;

HANDLE WINAPI CreateKnownSemaphore(SECURITY_ATTRIBUTES* security, LONG initial, LONG maximum,
                                   const wchar_t* name) {
  using Call = HANDLE(WINAPI*)(SECURITY_ATTRIBUTES*, LONG, LONG, const wchar_t*);
  const auto call = reinterpret_cast<Call>(reinterpret_cast<void*>(
      ::GetProcAddress(::GetModuleHandleW(L"kernel32"), "CreateSemaphoreW")));
  const HANDLE semaphore = call(security, initial, maximum, name);
  const LONG place = ::InterlockedIncrement(&count) - 1;
  if (place < kLimit) semaphores[place] = semaphore;
  return semaphore;
}

}  // namespace

// The pointer that an import library would define.
extern "C" {
extern const void* const quorvane_import_CreateSemaphoreW __asm__("__imp__CreateSemaphoreW@16");
const void* const quorvane_import_CreateSemaphoreW =
    reinterpret_cast<const void*>(&CreateKnownSemaphore);
}

namespace quorvane::server {

void CloseSemaphores() {
  for (HANDLE& semaphore : semaphores) {
    if (semaphore != nullptr) ::CloseHandle(semaphore);
    semaphore = nullptr;
  }
}

}  // namespace quorvane::server
