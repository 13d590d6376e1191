// The form in a window for people.

#include "programs/form_host/interactive.h"

#include "programs/form_host/windows/interactive/main_window.h"

namespace quorvane::programs {
namespace {

// Else the system would show the window enlarged, as if the screen had 96 dots per inch. Windows XP
// does not know the call.
void TellTheSystemThatDensitiesAreKnown() {
  const FARPROC call = ::GetProcAddress(::GetModuleHandleW(L"user32.dll"), "SetProcessDPIAware");
  if (call != nullptr) reinterpret_cast<BOOL(WINAPI*)()>(reinterpret_cast<void*>(call))();
}

}  // namespace

void RequireContainer(const char* /*option*/) {}

void RunInteractive(const std::string& form, CallLog& log) {
  TellTheSystemThatDensitiesAreKnown();
  MainWindow window(log);
  window.Start(form);
  window.Run();
}

}  // namespace quorvane::programs
