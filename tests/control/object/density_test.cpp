// Proves how large the control is on a display of another density. The density is read once in a
// process's life, so the test sets it and runs itself a second time.

#include "tests/support/component/fake_site.h"
#include "tests/support/component/host_window.h"
#include "tests/support/component/module_under_test.h"

namespace quorvane::component::density_test {
namespace {

constexpr DWORD kDotsPerInch = 120;
constexpr const wchar_t* kSecondRun = L"QUORVANE_TEST_SECOND_RUN";

// The density that processes find from now on; what stood there before comes back at the end.
class SystemDensity {
 public:
  explicit SystemDensity(DWORD dots_per_inch) {
    EXPECT_EQ(
        ::RegOpenKeyExW(HKEY_CURRENT_USER, L"Control Panel\\Desktop", 0, KEY_ALL_ACCESS, &key_),
        ERROR_SUCCESS);
    DWORD size = sizeof before_;
    had_one_ = ::RegQueryValueExW(key_, kName, nullptr, nullptr, reinterpret_cast<BYTE*>(&before_),
                                  &size) == ERROR_SUCCESS;
    Set(dots_per_inch);
  }
  SystemDensity(const SystemDensity&) = delete;
  SystemDensity& operator=(const SystemDensity&) = delete;
  ~SystemDensity() {
    if (had_one_)
      Set(before_);
    else
      EXPECT_EQ(::RegDeleteValueW(key_, kName), ERROR_SUCCESS);
    ::RegCloseKey(key_);
  }

 private:
  static constexpr const wchar_t* kName = L"LogPixels";

  void Set(DWORD density) {
    EXPECT_EQ(::RegSetValueExW(key_, kName, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&density),
                               sizeof density),
              ERROR_SUCCESS);
  }

  HKEY key_ = nullptr;
  DWORD before_ = 0;
  bool had_one_ = false;
};

// Exit code of this program when it runs the test alone.
DWORD ResultOfSecondRun() {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(::GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
  std::wstring words =
      L"\"" + path + L"\" --gtest_brief=1 --gtest_filter=Extent.HasMorePixelsOnADenserDisplay";
  ::SetEnvironmentVariableW(kSecondRun, L"1");
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION process{};
  if (::CreateProcessW(nullptr, words.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                       &process) == 0)
    return ~0U;
  ::SetEnvironmentVariableW(kSecondRun, nullptr);
  DWORD result = ~0U;
  if (::WaitForSingleObject(process.hProcess, 120'000) == WAIT_OBJECT_0)
    ::GetExitCodeProcess(process.hProcess, &result);
  ::CloseHandle(process.hThread);
  ::CloseHandle(process.hProcess);
  return result;
}

int DotsPerInch() {
  const HDC screen = ::GetDC(nullptr);
  const int dots = ::GetDeviceCaps(screen, LOGPIXELSX);
  ::ReleaseDC(nullptr, screen);
  return dots;
}

// Other programs are shown 96 dots per inch, whatever the display has.
void TellTheSystemThatThisProgramKnowsOfDensities() {
  const auto set_aware = reinterpret_cast<BOOL(WINAPI*)()>(reinterpret_cast<void*>(
      ::GetProcAddress(::GetModuleHandleW(L"user32.dll"), "SetProcessDPIAware")));
  ASSERT_NE(set_aware, nullptr);
  ASSERT_NE(set_aware(), 0);
}

void ShowTheControl() {
  TellTheSystemThatThisProgramKnowsOfDensities();
  ASSERT_EQ(DotsPerInch(), static_cast<int>(kDotsPerInch));
  OnApartmentThread([] {
    const Module module;
    const HostWindow host;
    FakeSite site(FakeSite::Offers::kInPlaceSiteEx, host.Get());
    const auto object = module.CreateControl().As<IOleObject>();
    SIZEL extent{};
    EXPECT_EQ(object->GetExtent(DVASPECT_CONTENT, &extent), S_OK);
    EXPECT_EQ(extent.cx, 741);
    EXPECT_EQ(object->SetClientSite(site.Site()), S_OK);
    EXPECT_EQ(object->DoVerb(OLEIVERB_SHOW, nullptr, site.Site(), 0, host.Get(), &site.rectangle),
              S_OK);
    HWND window = nullptr;
    EXPECT_EQ(object.As<IOleInPlaceObject>()->GetWindow(&window), S_OK);
    RECT shown{};
    EXPECT_NE(::GetWindowRect(window, &shown), 0);
    EXPECT_EQ(shown.right - shown.left, 35);
    EXPECT_EQ(shown.bottom - shown.top, 35);
    EXPECT_EQ(object->Close(OLECLOSE_NOSAVE), S_OK);
    EXPECT_EQ(object->SetClientSite(nullptr), S_OK);
  });
}

TEST(Extent, HasMorePixelsOnADenserDisplay) {
  if (::GetEnvironmentVariableW(kSecondRun, nullptr, 0) != 0) return ShowTheControl();
  const SystemDensity density(kDotsPerInch);
  EXPECT_EQ(ResultOfSecondRun(), 0U);
}

}  // namespace
}  // namespace quorvane::component::density_test
