// Proves that a library or an entry point that the system lacks is a run-time error of the call
// that wants it, and that the next call tries again.

#include <gtest/gtest.h>

#include "platform/windows/late_library.h"
#include "tests/support/raises.h"

namespace quorvane {
namespace {

using testing::ErrorNumberOf;

TEST(LateLibrary, FindsTheCallsOfALibraryThatIsThere) {
  LateLibrary library(L"iphlpapi.dll");
  LateCall<DWORD(WINAPI*)(void*, ULONG*)> call(library, "GetAdaptersInfo");
  ULONG size = 0;
  EXPECT_NE(call()(nullptr, &size), 0U);
  EXPECT_EQ(call(), call());
}

TEST(LateLibrary, RaisesLibraryNotFound) {
  LateLibrary library(L"quorvane_no_such_library.dll");
  LateCall<DWORD(WINAPI*)()> call(library, "GetAdaptersInfo");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(call()); }), 48);
  }
}

TEST(LateLibrary, RaisesEntryPointNotFound) {
  LateLibrary library(L"iphlpapi.dll");
  LateCall<DWORD(WINAPI*)()> call(library, "QuorvaneNoSuchCall");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(call()); }), 453);
  }
}

TEST(LateLibrary, LeavesTheLibraryAsLoadedAsItWas) {
  const auto is_loaded = [] { return ::GetModuleHandleW(L"winmm.dll") != nullptr; };
  const bool before = is_loaded();
  {
    LateLibrary library(L"winmm.dll");
    LateCall<DWORD(WINAPI*)()> call(library, "timeGetTime");
    static_cast<void>(call());
    EXPECT_TRUE(is_loaded());
  }
  EXPECT_EQ(is_loaded(), before);
}

}  // namespace
}  // namespace quorvane
