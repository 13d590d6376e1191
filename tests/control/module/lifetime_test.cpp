// Proves that the module gives everything back: over many rounds of load, use, failure and unload,
// and whichever of thread and module ends first.

#include <memory>
#include <vector>

#include "tests/support/component/module_under_test.h"
// Behind windows.h:
#include <psapi.h>

namespace quorvane::component::lifetime_test {
namespace {

// Counts access violations that the loader would swallow inside the entry function.
volatile LONG access_violations = 0;

LONG CALLBACK CountAccessViolations(EXCEPTION_POINTERS* exception) {
  if (exception->ExceptionRecord->ExceptionCode == EXCEPTION_ACCESS_VIOLATION) {
    ::InterlockedIncrement(&access_violations);
  }
  return EXCEPTION_CONTINUE_SEARCH;
}

class ViolationWatch {
 public:
  ViolationWatch() : handler_(::AddVectoredExceptionHandler(1, CountAccessViolations)) {
    access_violations = 0;
  }
  ViolationWatch(const ViolationWatch&) = delete;
  ViolationWatch& operator=(const ViolationWatch&) = delete;
  ~ViolationWatch() {
    ::RemoveVectoredExceptionHandler(handler_);
    EXPECT_EQ(access_violations, 0);
  }

 private:
  void* handler_;
};

int FreeTlsIndices() {
  std::vector<DWORD> taken;
  for (DWORD index = ::TlsAlloc(); index != TLS_OUT_OF_INDEXES; index = ::TlsAlloc()) {
    taken.push_back(index);
  }
  for (const DWORD index : taken) ::TlsFree(index);
  return static_cast<int>(taken.size());
}

SIZE_T PrivateBytes() {
  PROCESS_MEMORY_COUNTERS counters{};
  ::GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof(counters));
  return counters.PagefileUsage;
}

// One round of a host: load, create, use, a call that throws inside the module, release, unload.
void Round(const std::wstring& module_without_crc) {
  const Module module(module_without_crc);
  const auto control = module.CreateSecurityCtrl();
  EXPECT_EQ(control.As<IPersistStreamInit>()->InitNew(), S_OK);
  EXPECT_EQ(control->put_ServerAddress(Bstr(L"host").Get()), S_OK);
  LONG value = 0;
  EXPECT_EQ(control->GetCRCValue(&value), static_cast<HRESULT>(0x800A0035));
}

TEST(Lifetime, LosesNothingOver2500RoundsOfLoadThrowAndUnload) {
  OnApartmentThread([] {
    const ViolationWatch watch;
    const TemporaryFolder folder;
    const std::wstring copy = folder.File(L"thrower.dll");
    ASSERT_TRUE(::CopyFileW(QUORVANE_MODULE_FILE, copy.c_str(), TRUE));
    for (int i = 0; i < 50; ++i) Round(copy);
    const int indices = FreeTlsIndices();
    const ULONG_PTR handles = HandlePlace();
    const SIZE_T memory = PrivateBytes();
    for (int i = 0; i < 2500; ++i) Round(copy);
    EXPECT_FALSE(IsInMemory(copy));
    EXPECT_EQ(FreeTlsIndices(), indices);
    EXPECT_LT(HandlePlace(), handles + 100) << "less than one in 25 rounds";
    EXPECT_LT(PrivateBytes(), memory + 2'000'000) << "less than a kilobyte a round";
  });
}

TEST(Lifetime, AThreadMayOutliveTheModule) {
  const ViolationWatch watch;
  const TemporaryFolder folder;
  const std::wstring copy = folder.File(L"outlived.ocx");
  ASSERT_TRUE(::CopyFileW(QUORVANE_MODULE_FILE, copy.c_str(), TRUE));
  const HANDLE used = ::CreateEventW(nullptr, FALSE, FALSE, nullptr);
  const HANDLE unloaded = ::CreateEventW(nullptr, FALSE, FALSE, nullptr);
  auto module = std::make_unique<Module>(copy);
  std::thread thread([&] {
    ASSERT_TRUE(SUCCEEDED(::OleInitialize(nullptr)));
    EXPECT_EQ(module->CreateSecurityCtrl()->put_ServerPort(5), S_OK);
    ::SetEvent(used);
    ::WaitForSingleObject(unloaded, INFINITE);
    ::OleUninitialize();
  });
  ::WaitForSingleObject(used, INFINITE);
  EXPECT_EQ(module->CanUnloadNow(), S_OK);
  module.reset();
  EXPECT_FALSE(IsInMemory(copy)) << "the thread's settings do not hold the module";
  ::SetEvent(unloaded);
  thread.join();
  ::CloseHandle(used);
  ::CloseHandle(unloaded);
}

TEST(Lifetime, ManyThreadsMayEndBeforeTheModule) {
  const ViolationWatch watch;
  const Module module;
  OnApartmentThread([&] { EXPECT_EQ(module.CreateSecurityCtrl()->put_ServerPort(1), S_OK); });
  const int indices = FreeTlsIndices();
  const ULONG_PTR handles = HandlePlace();
  for (int i = 0; i < 100; ++i) {
    OnApartmentThread([&] {
      const auto control = module.CreateSecurityCtrl();
      SHORT port = 99;
      EXPECT_EQ(control->get_ServerPort(&port), S_OK);
      EXPECT_EQ(port, 0);
      EXPECT_EQ(control->put_ServerAddress(Bstr(std::wstring(1000, L'x')).Get()), S_OK);
      EXPECT_EQ(control->put_ServerPort(1), S_OK);
    });
  }
  EXPECT_EQ(FreeTlsIndices(), indices);
  EXPECT_LE(HandlePlace(), handles + 2);
}

TEST(Lifetime, SettingsStartAnewAfterTheModuleWasUnloaded) {
  OnApartmentThread([] {
    const TemporaryFolder folder;
    const std::wstring copy = folder.File(L"anew.ocx");
    ASSERT_TRUE(::CopyFileW(QUORVANE_MODULE_FILE, copy.c_str(), TRUE));
    {
      const Module module(copy);
      EXPECT_EQ(module.CreateSecurityCtrl()->put_ServerPort(5), S_OK);
    }
    ASSERT_FALSE(IsInMemory(copy));
    const Module module(copy);
    SHORT port = 99;
    EXPECT_EQ(module.CreateSecurityCtrl()->get_ServerPort(&port), S_OK);
    EXPECT_EQ(port, 0);
  });
}

TEST(Lifetime, TwoThreadsWorkAtOnceEachWithItsOwnSettings) {
  const ViolationWatch watch;
  const Module module;
  const auto work = [&module](SHORT start) {
    ASSERT_TRUE(SUCCEEDED(::OleInitialize(nullptr)));
    for (SHORT i = 0; i < 500; ++i) {
      const auto control = module.CreateSecurityCtrl();
      SHORT port = 0;
      EXPECT_EQ(control->put_ServerPort(static_cast<SHORT>(start + i)), S_OK);
      EXPECT_EQ(control->get_ServerPort(&port), S_OK);
      EXPECT_EQ(port, start + i);
    }
    ::OleUninitialize();
  };
  std::thread first(work, SHORT{0});
  std::thread second(work, SHORT{10000});
  first.join();
  second.join();
  EXPECT_EQ(module.CanUnloadNow(), S_OK);
}

}  // namespace
}  // namespace quorvane::component::lifetime_test
