// Proves the seven settings through the virtual table, as hosts compiled against the interface call
// them.

#include "tests/support/component/module_under_test.h"

namespace quorvane::component::settings_test {
namespace {

using TextGet = HRESULT (STDMETHODCALLTYPE ISecurityCtrl::*)(BSTR*);
using TextPut = HRESULT (STDMETHODCALLTYPE ISecurityCtrl::*)(BSTR);

struct TextMember {
  const char* name;
  TextGet get;
  TextPut put;
};

const TextMember kTextMembers[] = {
    {"ServerAddress", &ISecurityCtrl::get_ServerAddress, &ISecurityCtrl::put_ServerAddress},
    {"ServerFile", &ISecurityCtrl::get_ServerFile, &ISecurityCtrl::put_ServerFile},
    {"ProxyServer", &ISecurityCtrl::get_ProxyServer, &ISecurityCtrl::put_ProxyServer},
    {"UserName", &ISecurityCtrl::get_UserName, &ISecurityCtrl::put_UserName},
    {"Password", &ISecurityCtrl::get_Password, &ISecurityCtrl::put_Password},
};

std::wstring Get(const Com<ISecurityCtrl>& control, const TextMember& member) {
  Bstr value;
  EXPECT_EQ((control.Get()->*member.get)(value.Out()), S_OK) << member.name;
  return value.Text();
}

SHORT Port(const Com<ISecurityCtrl>& control) {
  SHORT port = 12345;
  EXPECT_EQ(control->get_ServerPort(&port), S_OK);
  return port;
}

VARIANT_BOOL UseProxy(const Com<ISecurityCtrl>& control) {
  VARIANT_BOOL value = 12345;
  EXPECT_EQ(control->get_UseProxy(&value), S_OK);
  return value;
}

TEST(Settings, AreEmptyAndPortZeroForANewControlOnAFreshThread) {
  OnApartmentThread([] {
    const Module module;
    const auto control = module.CreateSecurityCtrl();
    EXPECT_EQ(control.As<IPersistStreamInit>()->InitNew(), S_OK);
    for (const auto& member : kTextMembers) EXPECT_EQ(Get(control, member), L"") << member.name;
    EXPECT_EQ(Port(control), 0);
    EXPECT_EQ(UseProxy(control), VARIANT_FALSE);
  });
}

TEST(Settings, KeepTextsWithEveryKindOfCharacter) {
  OnApartmentThread([] {
    const Module module;
    const auto control = module.CreateSecurityCtrl();
    const std::wstring text(L"a\0b \u00E9 \u4E00 \xD800 z", 13);
    for (const auto& member : kTextMembers) {
      const Bstr value(text + static_cast<wchar_t>(L'0' + (&member - kTextMembers)));
      EXPECT_EQ((control.Get()->*member.put)(value.Get()), S_OK) << member.name;
    }
    for (const auto& member : kTextMembers) {
      EXPECT_EQ(Get(control, member), text + static_cast<wchar_t>(L'0' + (&member - kTextMembers)));
    }
  });
}

TEST(Settings, TakeANullTextAsEmpty) {
  OnApartmentThread([] {
    const Module module;
    const auto control = module.CreateSecurityCtrl();
    for (const auto& member : kTextMembers) {
      EXPECT_EQ((control.Get()->*member.put)(Bstr(L"before").Get()), S_OK);
      EXPECT_EQ((control.Get()->*member.put)(nullptr), S_OK) << member.name;
      EXPECT_EQ(Get(control, member), L"") << member.name;
    }
  });
}

TEST(Settings, HandOutAFreshCopyEachTime) {
  OnApartmentThread([] {
    const Module module;
    const auto control = module.CreateSecurityCtrl();
    EXPECT_EQ(control->put_ServerFile(Bstr(L"/form").Get()), S_OK);
    Bstr first;
    Bstr second;
    EXPECT_EQ(control->get_ServerFile(first.Out()), S_OK);
    EXPECT_EQ(control->get_ServerFile(second.Out()), S_OK);
    EXPECT_NE(first.Get(), second.Get());
    first.Get()[0] = L'X';
    EXPECT_EQ(Get(control, kTextMembers[1]), L"/form");
  });
}

TEST(Settings, RefuseAGetWithoutAnOutPointer) {
  OnApartmentThread([] {
    const Module module;
    const auto control = module.CreateSecurityCtrl();
    for (const auto& member : kTextMembers) {
      EXPECT_EQ((control.Get()->*member.get)(nullptr), E_POINTER) << member.name;
    }
    EXPECT_EQ(control->get_ServerPort(nullptr), E_POINTER);
    EXPECT_EQ(control->get_UseProxy(nullptr), E_POINTER);
    EXPECT_EQ(control->GetCRCValue(nullptr), E_POINTER);
  });
}

TEST(Settings, TakeEveryPort) {
  OnApartmentThread([] {
    const Module module;
    const auto control = module.CreateSecurityCtrl();
    for (const SHORT port : std::initializer_list<SHORT>{-32768, -1, 0, 80, 32767}) {
      EXPECT_EQ(control->put_ServerPort(port), S_OK);
      EXPECT_EQ(Port(control), port);
    }
  });
}

TEST(Settings, KeepTheRawBitsOfUseProxyThroughTheVirtualTable) {
  OnApartmentThread([] {
    const Module module;
    const auto control = module.CreateSecurityCtrl();
    for (const VARIANT_BOOL bits : std::initializer_list<VARIANT_BOOL>{1, -1, 0, 0x7FFF}) {
      EXPECT_EQ(control->put_UseProxy(bits), S_OK);
      EXPECT_EQ(UseProxy(control), bits);
    }
  });
}

TEST(Settings, AreSharedByAllControlsOfAThread) {
  OnApartmentThread([] {
    const Module module;
    const auto first = module.CreateSecurityCtrl();
    const auto second = module.CreateSecurityCtrl();
    EXPECT_EQ(first->put_ServerPort(81), S_OK);
    EXPECT_EQ(Port(second), 81);
    EXPECT_EQ(second->put_ServerAddress(Bstr(L"second").Get()), S_OK);
    EXPECT_EQ(Get(first, kTextMembers[0]), L"second");
  });
}

TEST(Settings, OutliveTheControlOnTheirThread) {
  OnApartmentThread([] {
    const Module module;
    EXPECT_EQ(module.CreateSecurityCtrl()->put_ServerPort(82), S_OK);
    EXPECT_EQ(Port(module.CreateSecurityCtrl()), 82);
  });
}

TEST(Settings, AreUnseenByOtherThreads) {
  OnApartmentThread([] {
    const Module module;
    const auto control = module.CreateSecurityCtrl();
    EXPECT_EQ(control->put_ServerPort(83), S_OK);
    OnApartmentThread([&module] {
      const auto other = module.CreateSecurityCtrl();
      EXPECT_EQ(Port(other), 0);
      EXPECT_EQ(other->put_ServerPort(84), S_OK);
    });
    EXPECT_EQ(Port(control), 83);
  });
}

TEST(Settings, OfASecondNewControlClearTheProxySettingsOnly) {
  OnApartmentThread([] {
    const Module module;
    const auto first = module.CreateSecurityCtrl();
    for (const auto& member : kTextMembers) {
      EXPECT_EQ((first.Get()->*member.put)(Bstr(L"kept").Get()), S_OK);
    }
    EXPECT_EQ(first->put_ServerPort(85), S_OK);
    EXPECT_EQ(first->put_UseProxy(VARIANT_TRUE), S_OK);
    EXPECT_EQ(module.CreateControl().As<IPersistPropertyBag>()->InitNew(), S_OK);
    EXPECT_EQ(Get(first, kTextMembers[0]), L"kept");
    EXPECT_EQ(Port(first), 85);
    EXPECT_EQ(Get(first, kTextMembers[1]), L"kept");
    EXPECT_EQ(UseProxy(first), VARIANT_FALSE);
    EXPECT_EQ(Get(first, kTextMembers[2]), L"");
    EXPECT_EQ(Get(first, kTextMembers[3]), L"");
    EXPECT_EQ(Get(first, kTextMembers[4]), L"");
  });
}

}  // namespace
}  // namespace quorvane::component::settings_test
