// The compiler's per-thread variables, in place of its run-time library's own way, which never
// gives back the module's TLS index: a host that loads, lets throw and unloads the module about a
// thousand times would be aborted for want of one.
//
// The compiler calls __emutls_get_address with a description of the variable (the layout below is
// its own). Each thread holds a list of its copies; a list of all copies serves the unloading. When
// there is no memory for a copy, or no TLS index, it lies in the thread's reserve.

#include "control/crt/emulated_tls.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "control/crt/thread_reserve.h"
#include "platform/windows/os_headers.h"

using quorvane::component::FindReservedVariable;
using quorvane::component::LeaveReserve;
using quorvane::component::ReservedVariable;
using quorvane::component::TakeReservedVariable;

namespace {

struct Variable {
  std::size_t size;
  std::size_t alignment;  // of what the compiler itself uses never above that of a Copy
  void* unused;
  const void* initial_value;  // or null: all zeros
};

// One thread's copy of one variable; its bytes follow.
struct alignas(16) Copy {
  const Variable* variable;
  Copy* next_of_thread;
  Copy* next;

  void* Bytes() { return this + 1; }
};

constinit DWORD tls_index = TLS_OUT_OF_INDEXES;
constinit Copy* all_copies = nullptr;
constinit LONG volatile is_taken = 0;

// Held for a few instructions only. No lock of the system: it would need a start and an end of its
// own, and exceptions are thrown before the one and after the other.
class Turn {
 public:
  Turn() {
    while (::InterlockedExchange(&is_taken, 1) != 0) ::Sleep(0);
  }
  ~Turn() { ::InterlockedExchange(&is_taken, 0); }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;
};

DWORD Index() {
  const Turn turn;
  if (tls_index == TLS_OUT_OF_INDEXES) tls_index = ::TlsAlloc();
  return tls_index;
}

void Free(Copy* copy) { ::HeapFree(::GetProcessHeap(), 0, copy); }

void Start(Copy& copy, const Variable& variable) {
  copy.variable = &variable;
  if (variable.initial_value != nullptr)
    std::memcpy(copy.Bytes(), variable.initial_value, variable.size);
}

// Null when the system has no room for it.
Copy* Add(const Variable& variable, DWORD index, Copy* first_of_thread) {
  if (index == TLS_OUT_OF_INDEXES) return nullptr;
  auto* const copy = static_cast<Copy*>(
      ::HeapAlloc(::GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(Copy) + variable.size));
  if (copy == nullptr) return nullptr;
  Start(*copy, variable);
  copy->next_of_thread = first_of_thread;
  if (::TlsSetValue(index, copy) == FALSE) {
    Free(copy);
    return nullptr;
  }
  const Turn turn;
  copy->next = all_copies;
  all_copies = copy;
  return copy;
}

// The module has one such variable, that of the exception handling, which cannot go on without it.
void* TakeReserve(const Variable& variable) {
  if (variable.size > sizeof(ReservedVariable)) std::abort();
  return &TakeReservedVariable();
}

void EndThread() {
  LeaveReserve();
  if (tls_index == TLS_OUT_OF_INDEXES) return;
  auto* copy = static_cast<Copy*>(::TlsGetValue(tls_index));
  ::TlsSetValue(tls_index, nullptr);
  const Turn turn;
  while (copy != nullptr) {
    Copy** link = &all_copies;
    while (*link != copy) link = &(*link)->next;
    *link = copy->next;
    Copy* const next = copy->next_of_thread;
    Free(copy);
    copy = next;
  }
}

void EndModule() {
  const Turn turn;
  while (all_copies != nullptr) {
    Copy* const copy = all_copies;
    all_copies = copy->next;
    Free(copy);
  }
  if (tls_index != TLS_OUT_OF_INDEXES) ::TlsFree(tls_index);
  tls_index = TLS_OUT_OF_INDEXES;
}

}  // namespace

extern "C" void* __emutls_get_address(Variable* variable);

extern "C" void* __emutls_get_address(Variable* variable) {
  // Asking for a TLS value clears the last-error code, which belongs to whoever reads it next.
  const DWORD last_error = ::GetLastError();
  const DWORD index = Index();
  auto* const first =
      index != TLS_OUT_OF_INDEXES ? static_cast<Copy*>(::TlsGetValue(index)) : nullptr;
  Copy* copy = first;
  while (copy != nullptr && copy->variable != variable) copy = copy->next_of_thread;
  void* bytes = copy != nullptr ? copy->Bytes() : FindReservedVariable();
  if (bytes == nullptr) {
    copy = Add(*variable, index, first);
    bytes = copy != nullptr ? copy->Bytes() : TakeReserve(*variable);
  }
  ::SetLastError(last_error);
  return bytes;
}

namespace quorvane::component {

void EmulatedTlsOnLoaderNotice(unsigned long reason, const void* process_ends) {
  if (reason == DLL_THREAD_DETACH) EndThread();
  // At the end of the process the system takes all back.
  if (reason == DLL_PROCESS_DETACH && process_ends == nullptr) EndModule();
}

}  // namespace quorvane::component
