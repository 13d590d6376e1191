#include "programs/quorvane/web_watch.h"

#include <windows.h>
// Behind windows.h, which it needs.
#include <wininet.h>

namespace quorvane::programs {

std::int32_t LastWebFailure() { return static_cast<std::int32_t>(::GetLastError()); }

void SetTimeOut(InternetHandle handle, std::chrono::seconds time_out) {
  // The library is in memory: it has opened the handle.
  const HMODULE library = ::GetModuleHandleW(L"wininet.dll");
  const auto set_option = reinterpret_cast<decltype(&::InternetSetOptionW)>(
      reinterpret_cast<void*>(::GetProcAddress(library, "InternetSetOptionW")));
  if (set_option == nullptr) return;
  auto milliseconds = static_cast<DWORD>(std::chrono::milliseconds(time_out).count());
  for (const int option : {INTERNET_OPTION_CONNECT_TIMEOUT, INTERNET_OPTION_SEND_TIMEOUT,
                           INTERNET_OPTION_RECEIVE_TIMEOUT}) {
    set_option(reinterpret_cast<HINTERNET>(handle), static_cast<DWORD>(option), &milliseconds,
               sizeof milliseconds);
  }
}

}  // namespace quorvane::programs
