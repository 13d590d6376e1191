#include <windows.h>

#include "tests/web/real_servers.h"

namespace quorvane::testing {
namespace {

void Configure(bool enabled, const std::string& proxy) {
  HKEY key = nullptr;
  ASSERT_EQ(::RegCreateKeyExA(HKEY_CURRENT_USER,
                              "Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings", 0,
                              nullptr, 0, KEY_SET_VALUE, nullptr, &key, nullptr),
            ERROR_SUCCESS);
  const DWORD enable = enabled ? 1 : 0;
  EXPECT_EQ(::RegSetValueExA(key, "ProxyEnable", 0, REG_DWORD,
                             reinterpret_cast<const BYTE*>(&enable), sizeof enable),
            ERROR_SUCCESS);
  if (enabled) {
    EXPECT_EQ(::RegSetValueExA(key, "ProxyServer", 0, REG_SZ,
                               reinterpret_cast<const BYTE*>(proxy.c_str()),
                               static_cast<DWORD>(proxy.size() + 1)),
              ERROR_SUCCESS);
  } else {
    EXPECT_EQ(::RegDeleteValueA(key, "ProxyServer"), ERROR_SUCCESS);
  }
  ::RegCloseKey(key);
}

}  // namespace

ConfiguredProxy::ConfiguredProxy(const Text& proxy) { Configure(true, ToUtf8(proxy)); }

ConfiguredProxy::~ConfiguredProxy() { Configure(false, ""); }

}  // namespace quorvane::testing
