#pragma once

#include <gtest/gtest.h>

#include "tests/support/component/com.h"

namespace quorvane::component {

/// All seven settings as the virtual table gives them.
struct Values {
  std::wstring server_address;
  SHORT server_port = 0;
  std::wstring server_file;
  VARIANT_BOOL use_proxy = VARIANT_FALSE;
  std::wstring proxy_server;
  std::wstring user_name;
  std::wstring password;

  friend bool operator==(const Values&, const Values&) = default;
};

inline const Values kDefaults{L"", 80, L"", VARIANT_FALSE, L"", L"", L""};
inline const Values kOthers{L"host",       8081,    L"/form.cgi", VARIANT_TRUE,
                            L"proxy:3128", L"user", L"p\u00E4ss"};

inline void PrintTo(const Values& v, std::ostream* out) {
  const auto narrow = [](const std::wstring& text) {
    std::string s;
    for (const wchar_t c : text) s += c < 0x7F ? static_cast<char>(c) : '?';
    return s;
  };
  *out << narrow(v.server_address) << '|' << v.server_port << '|' << narrow(v.server_file) << '|'
       << v.use_proxy << '|' << narrow(v.proxy_server) << '|' << narrow(v.user_name) << '|'
       << narrow(v.password);
}

inline Values ValuesOf(const Com<ISecurityCtrl>& control) {
  Values values;
  Bstr text;
  EXPECT_EQ(control->get_ServerAddress(text.Out()), S_OK);
  values.server_address = text.Text();
  EXPECT_EQ(control->get_ServerPort(&values.server_port), S_OK);
  EXPECT_EQ(control->get_ServerFile(text.Out()), S_OK);
  values.server_file = text.Text();
  EXPECT_EQ(control->get_UseProxy(&values.use_proxy), S_OK);
  EXPECT_EQ(control->get_ProxyServer(text.Out()), S_OK);
  values.proxy_server = text.Text();
  EXPECT_EQ(control->get_UserName(text.Out()), S_OK);
  values.user_name = text.Text();
  EXPECT_EQ(control->get_Password(text.Out()), S_OK);
  values.password = text.Text();
  return values;
}

inline void PutValues(const Com<ISecurityCtrl>& control, const Values& values) {
  EXPECT_EQ(control->put_ServerAddress(Bstr(values.server_address).Get()), S_OK);
  EXPECT_EQ(control->put_ServerPort(values.server_port), S_OK);
  EXPECT_EQ(control->put_ServerFile(Bstr(values.server_file).Get()), S_OK);
  EXPECT_EQ(control->put_UseProxy(values.use_proxy), S_OK);
  EXPECT_EQ(control->put_ProxyServer(Bstr(values.proxy_server).Get()), S_OK);
  EXPECT_EQ(control->put_UserName(Bstr(values.user_name).Get()), S_OK);
  EXPECT_EQ(control->put_Password(Bstr(values.password).Get()), S_OK);
}

}  // namespace quorvane::component
