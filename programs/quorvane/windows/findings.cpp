#include "programs/quorvane/findings.h"

#include <windows.h>

#include <array>

#include "programs/common/windows/system_message.h"
#include "programs/quorvane/stored_registry.h"
#include "runtime/utf8.h"

namespace quorvane::programs {
namespace {

std::string Utf8(const wchar_t* text) {
  return ToUtf8(Text(reinterpret_cast<const char16_t*>(text)));
}

std::string Version() {
  OSVERSIONINFOW version{};
  version.dwOSVersionInfoSize = sizeof version;
  if (::GetVersionExW(&version) == 0) return "unknown";
  return "Windows " + std::to_string(version.dwMajorVersion) + "." +
         std::to_string(version.dwMinorVersion) + "." + std::to_string(version.dwBuildNumber);
}

std::string Locale() {
  std::array<wchar_t, 128> name{};
  ::GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, LOCALE_SENGLANGUAGE, name.data(), name.size());
  std::array<wchar_t, 128> country{};
  ::GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, LOCALE_SENGCOUNTRY, country.data(), country.size());
  return Utf8(name.data()) + " (" + Utf8(country.data()) + ")";
}

Finding WebClient() {
  const HMODULE library = ::LoadLibraryW(L"wininet.dll");
  if (library == nullptr)
    return {"web client", "wininet.dll: " + SystemMessage(::GetLastError()), true};
  std::array<wchar_t, MAX_PATH> path{};
  ::GetModuleFileNameW(library, path.data(), path.size());
  ::FreeLibrary(library);
  return {"web client", Utf8(path.data())};
}

Finding Registry() {
  HKEY key = nullptr;
  const LSTATUS result =
      ::RegOpenKeyExW(HKEY_CURRENT_USER, L"Software", 0, KEY_READ | KEY_WRITE, &key);
  if (key != nullptr) ::RegCloseKey(key);
  const bool is_good = result == ERROR_SUCCESS;
  return {"registry",
          "HKEY_CURRENT_USER\\Software: " +
              (is_good ? "can be read and written" : SystemMessage(static_cast<DWORD>(result))),
          !is_good};
}

Finding Profile() {
  std::array<wchar_t, MAX_PATH> folder{};
  ::GetWindowsDirectoryW(folder.data(), folder.size());
  const std::string file = Utf8(folder.data()) + "\\win.ini";
  const HANDLE opened = ::CreateFileW(
      reinterpret_cast<const wchar_t*>(FromUtf8(file).Characters().c_str()), GENERIC_WRITE,
      FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
  const DWORD reason = ::GetLastError();
  if (opened != INVALID_HANDLE_VALUE) {
    ::CloseHandle(opened);
    return {"profile", file + ": can be read and written"};
  }
  if (reason == ERROR_FILE_NOT_FOUND) return {"profile", file + ": not there yet"};
  return {"profile", file + ": cannot be written: " + SystemMessage(reason), true};
}

}  // namespace

std::vector<Finding> SystemFindings() {
  return {
      {"system", Version()}, WebClient(), {"code page", std::to_string(::GetACP())},
      {"locale", Locale()},  Registry(),  Profile(),
  };
}

}  // namespace quorvane::programs
