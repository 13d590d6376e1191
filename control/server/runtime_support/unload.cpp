#include "control/server/runtime_support/unload.h"

#include "control/server/runtime_support/emulated_tls.h"
#include "control/server/runtime_support/semaphores.h"
#include "platform/windows/os_headers.h"

namespace __gnu_cxx {

// Of the run-time library: frees the memory that it holds ready for exceptions thrown when no other
// memory is left.
void __freeres();

}  // namespace __gnu_cxx

namespace quorvane::server {

void RuntimeSupportOnLoaderNotice(unsigned long reason, const void* process_ends) {
  if (reason == DLL_THREAD_DETACH) EndEmulatedTlsOfThread();
  // At the end of the process the system takes all back.
  if (reason != DLL_PROCESS_DETACH || process_ends != nullptr) return;
  EndEmulatedTls();
  CloseSemaphores();
  __gnu_cxx::__freeres();
}

}  // namespace quorvane::server
