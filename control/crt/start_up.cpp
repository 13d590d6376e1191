// The function that the loader calls, in place of the compiler's start-up code, which serves any
// module: at each load that one looks for the run-time library's DLL along the whole search path,
// to register the tables with it that are found without here (frames.cpp). It took most of a load.
//
// What the module needs is little: its static variables are made before DllMain() hears of the
// load and end after it heard of the unload.

#include <cstdlib>

#include "platform/windows/os_headers.h"

extern "C" {

using Procedure = void (*)();

// Written by the linker: a count that nobody keeps, what makes static variables, and a null.
extern const Procedure __CTOR_LIST__[];  // NOLINT(bugprone-reserved-identifier): the linker's name

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void* process_ends);
BOOL WINAPI DllMainCRTStartup(HINSTANCE module, DWORD reason, void* process_ends);

}  // extern "C"

namespace {

// More than the module has static variables that end.
constexpr LONG kMostEnds = 32;
constinit Procedure ends[kMostEnds] = {};  // NOLINT(*-avoid-c-arrays): as the list above
constinit LONG volatile ends_count = 0;

// The last of the list comes first, as the compiler counts on.
void MakeStatics() {
  const Procedure* procedure = __CTOR_LIST__ + 1;
  while (*procedure != nullptr) ++procedure;
  while (--procedure != __CTOR_LIST__) (*procedure)();
}

void EndStatics() {
  for (LONG left = ends_count; left > 0;) ends[--left]();
}

}  // namespace

extern "C" {

// What the compiler calls once a static variable is made, to have it ended.
int atexit(Procedure end) {
  const LONG place = ::InterlockedIncrement(&ends_count) - 1;
  if (place >= kMostEnds) std::abort();
  ends[place] = end;
  return 0;
}

BOOL WINAPI DllMainCRTStartup(HINSTANCE module, DWORD reason, void* process_ends) {
  if (reason == DLL_PROCESS_ATTACH) MakeStatics();
  const BOOL result = ::DllMain(module, reason, process_ends);
  // At the end of the process the system takes all back.
  if (reason == DLL_PROCESS_DETACH && process_ends == nullptr) EndStatics();
  return result;
}

}  // extern "C"
