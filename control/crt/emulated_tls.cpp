// The compiler's per-thread variables, in place of its run-time library's own way, which never
// gives back the module's TLS index: a host that loads, lets throw and unloads the module about a
// thousand times would be aborted for want of one.
//
// The compiler calls __emutls_get_address with a description of the variable (the layout below is
// its own). Each thread holds a list of its copies; a list of all copies serves the unloading.

#include "control/crt/emulated_tls.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "platform/windows/os_headers.h"

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

// The exception handling cannot go on without its variables.
void* OrEnd(void* memory) {
  if (memory == nullptr) std::abort();
  return memory;
}

DWORD Index() {
  const Turn turn;
  if (tls_index == TLS_OUT_OF_INDEXES) tls_index = ::TlsAlloc();
  if (tls_index == TLS_OUT_OF_INDEXES) std::abort();
  return tls_index;
}

Copy* Add(const Variable& variable, DWORD index, Copy* first_of_thread) {
  auto* copy = static_cast<Copy*>(
      OrEnd(::HeapAlloc(::GetProcessHeap(), HEAP_ZERO_MEMORY, sizeof(Copy) + variable.size)));
  copy->variable = &variable;
  copy->next_of_thread = first_of_thread;
  if (variable.initial_value != nullptr)
    std::memcpy(copy->Bytes(), variable.initial_value, variable.size);
  ::TlsSetValue(index, copy);
  const Turn turn;
  copy->next = all_copies;
  all_copies = copy;
  return copy;
}

void Free(Copy* copy) { ::HeapFree(::GetProcessHeap(), 0, copy); }

void EndThread() {
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
  auto* const first = static_cast<Copy*>(::TlsGetValue(index));
  Copy* copy = first;
  while (copy != nullptr && copy->variable != variable) copy = copy->next_of_thread;
  if (copy == nullptr) copy = Add(*variable, index, first);
  ::SetLastError(last_error);
  return copy->Bytes();
}

namespace quorvane::server {

void EmulatedTlsOnLoaderNotice(unsigned long reason, const void* process_ends) {
  if (reason == DLL_THREAD_DETACH) EndThread();
  // At the end of the process the system takes all back.
  if (reason == DLL_PROCESS_DETACH && process_ends == nullptr) EndModule();
}

}  // namespace quorvane::server
