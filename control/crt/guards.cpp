// Guards the first use of the variables that are static in a function, in place of the run-time
// library's own way, whose lock is a semaphore that nobody closes: a host would lose a handle with
// each load of the module.

#include "platform/windows/os_headers.h"

namespace {

// The compiler itself reads the first byte, and looks no further once it is set.
constexpr LONG kUntouched = 0;
constexpr LONG kDone = 1;
constexpr LONG kInWork = 0x100;

}  // namespace

extern "C" {

int __cxa_guard_acquire(LONG volatile* guard);
void __cxa_guard_release(LONG volatile* guard);
void __cxa_guard_abort(LONG volatile* guard);

// 1 for the one caller that is to make the variable; the others wait until it is made.
int __cxa_guard_acquire(LONG volatile* guard) {
  for (;;) {
    const LONG found = ::InterlockedCompareExchange(guard, kInWork, kUntouched);
    if (found == kUntouched) return 1;
    if ((found & kDone) != 0) return 0;
    ::Sleep(1);
  }
}

void __cxa_guard_release(LONG volatile* guard) { ::InterlockedExchange(guard, kDone); }

void __cxa_guard_abort(LONG volatile* guard) { ::InterlockedExchange(guard, kUntouched); }

}  // extern "C"
