// Proves that a library or an entry point that the system lacks is a run-time error of the call
// that wants it, and that the next call tries again.

#include <gtest/gtest.h>

#include "platform/windows/delay_load.h"
#include "tests/support/raises.h"

namespace quorvane {
namespace {

using testing::ErrorNumberOf;

TEST(DelayLoadLibrary, FindsTheCallsOfALibraryThatIsThere) {
  DelayLoadLibrary library(L"iphlpapi.dll");
  DelayLoadCall<DWORD(WINAPI*)(void*, ULONG*)> call(library, "GetAdaptersInfo");
  ULONG size = 0;
  EXPECT_NE(call()(nullptr, &size), 0U);
  EXPECT_EQ(call(), call());
}

TEST(DelayLoadLibrary, RaisesLibraryNotFound) {
  DelayLoadLibrary library(L"quorvane_no_such_library.dll");
  DelayLoadCall<DWORD(WINAPI*)()> call(library, "GetAdaptersInfo");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(call()); }), 48);
  }
}

TEST(DelayLoadLibrary, RaisesEntryPointNotFound) {
  DelayLoadLibrary library(L"iphlpapi.dll");
  DelayLoadCall<DWORD(WINAPI*)()> call(library, "QuorvaneNoSuchCall");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(call()); }), 453);
  }
}

TEST(DelayLoadLibrary, LeavesTheLibraryAsLoadedAsItWas) {
  const auto is_loaded = [] { return ::GetModuleHandleW(L"winmm.dll") != nullptr; };
  const bool before = is_loaded();
  {
    DelayLoadLibrary library(L"winmm.dll");
    DelayLoadCall<DWORD(WINAPI*)()> call(library, "timeGetTime");
    static_cast<void>(call());
    EXPECT_TRUE(is_loaded());
  }
  EXPECT_EQ(is_loaded(), before);
}

}  // namespace
}  // namespace quorvane
