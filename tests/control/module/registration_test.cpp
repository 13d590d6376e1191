// Proves that DllRegisterServer writes what hosts and the component model look up, and that
// DllUnregisterServer removes exactly that.

#include <map>

#include "tests/support/component/failing_allocations.h"
#include "tests/support/component/module_under_test.h"

namespace quorvane::component::registration_test {
namespace {

using testing::ReplacedImport;

using Tree = std::map<std::wstring, std::wstring>;

const std::wstring kClassKey = L"CLSID\\{D87A57E7-81C3-11D5-97D8-0050BA8CAAD8}";
const std::wstring kEarlierKey = L"Interface\\{8B4B3B95-B3A0-11D5-8FF3-0060B0A44813}";
const std::wstring kLibraryKey = L"TypeLib\\{D87A57E5-81C3-11D5-97D8-0050BA8CAAD8}";
// Of the library by which the earlier interfaces are marshalled.
const std::wstring kMarshallingKey = L"TypeLib\\{34356A0C-F8F5-4F2E-97B7-A27990164D0B}";

std::wstring IdText(REFGUID id) {
  wchar_t text[40];
  ::StringFromGUID2(id, text, 40);
  return text;
}

// Adds every value below the key, "path|name" to its text or number.
void Collect(HKEY root, const std::wstring& path, Tree& tree) {
  HKEY key = nullptr;
  if (::RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return;
  tree[path];
  for (DWORD i = 0;; ++i) {
    wchar_t name[256];
    DWORD name_length = 256;
    wchar_t data[1024];
    DWORD size = sizeof(data) - sizeof(wchar_t);
    DWORD type = 0;
    if (::RegEnumValueW(key, i, name, &name_length, nullptr, &type, reinterpret_cast<BYTE*>(data),
                        &size) != ERROR_SUCCESS) {
      break;
    }
    const std::wstring text(data, size / sizeof(wchar_t));
    EXPECT_TRUE(text.ends_with(L'\0')) << "a text is stored with its zero";
    tree[path + L"|" + name] =
        type == REG_SZ ? text.c_str() : L"(type " + std::to_wstring(type) + L")";
  }
  for (DWORD i = 0;; ++i) {
    wchar_t name[256];
    DWORD length = 256;
    if (::RegEnumKeyExW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) !=
        ERROR_SUCCESS) {
      break;
    }
    Collect(root, path + L"\\" + name, tree);
  }
  ::RegCloseKey(key);
}

Tree OwnKeys() {
  Tree tree;
  Collect(HKEY_CLASSES_ROOT, kClassKey, tree);
  Collect(HKEY_CLASSES_ROOT, kLibraryKey, tree);
  Collect(HKEY_CLASSES_ROOT, kMarshallingKey, tree);
  Collect(HKEY_CLASSES_ROOT, L"QuorvaneSecurity.SecurityCtrl", tree);
  for (const auto& generation : identities::kGenerations) {
    Collect(HKEY_CLASSES_ROOT, L"Interface\\" + IdText(ToGuid(generation.interface_id)), tree);
    Collect(HKEY_CLASSES_ROOT, L"Interface\\" + IdText(ToGuid(generation.source_id)), tree);
  }
  return tree;
}

class Registration : public ::testing::Test {
 protected:
  void SetUp() override {
    module_.Unregister();
    ASSERT_TRUE(OwnKeys().empty());
  }
  void TearDown() override { module_.Unregister(); }

  std::wstring ModulePath() const {
    wchar_t path[MAX_PATH];
    ::GetModuleFileNameW(module_.Handle(), path, MAX_PATH);
    return path;
  }

  Module module_;
};

TEST_F(Registration, WritesTheStandardKeys) {
  ASSERT_EQ(module_.Register(), S_OK);
  const Tree tree = OwnKeys();
  const auto value = [&tree](const std::wstring& key, const std::wstring& name = L"") {
    const auto found = tree.find(key + L"|" + name);
    return found == tree.end() ? std::wstring(L"(missing)") : found->second;
  };
  const auto has_key = [&tree](const std::wstring& key) { return tree.contains(key); };
  EXPECT_EQ(value(kClassKey), L"QuorvaneSecurity.SecurityCtrl");
  EXPECT_EQ(::_wcsicmp(value(kClassKey + L"\\InprocServer32").c_str(), ModulePath().c_str()), 0);
  EXPECT_EQ(value(kClassKey + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
  EXPECT_EQ(value(kClassKey + L"\\ProgID"), L"QuorvaneSecurity.SecurityCtrl");
  EXPECT_TRUE(has_key(kClassKey + L"\\Control"));
  EXPECT_EQ(::_wcsicmp(value(kClassKey + L"\\ToolboxBitmap32").c_str(),
                       (ModulePath() + L", 30000").c_str()),
            0);
  EXPECT_EQ(value(kClassKey + L"\\MiscStatus"), L"0");
  EXPECT_EQ(value(kClassKey + L"\\MiscStatus\\1"), L"148881");
  EXPECT_EQ(value(kClassKey + L"\\TypeLib"), L"{D87A57E5-81C3-11D5-97D8-0050BA8CAAD8}");
  EXPECT_EQ(value(kClassKey + L"\\Version"), L"443.16");
  EXPECT_EQ(value(L"QuorvaneSecurity.SecurityCtrl"), L"QuorvaneSecurity.SecurityCtrl");
  EXPECT_EQ(value(L"QuorvaneSecurity.SecurityCtrl\\CLSID"),
            L"{D87A57E7-81C3-11D5-97D8-0050BA8CAAD8}");
  EXPECT_EQ(value(kLibraryKey + L"\\1bb.10"), L"QuorvaneSecurity");
}

TEST_F(Registration, LetsHostsFindTheTypeLibrary) {
  ASSERT_EQ(module_.Register(), S_OK);
  Com<ITypeLib> library;
  EXPECT_EQ(::LoadRegTypeLib(ToGuid(identities::kLibraryId), 443, 16, 1033, library.Out()), S_OK);
  EXPECT_TRUE(library);
}

TEST_F(Registration, LetsHostsFindTheTypeLibraryWhateverLocaleTheyName) {
  ASSERT_EQ(module_.Register(), S_OK);
  for (const LCID locale : {0UL, 9UL, 1033UL, 1031UL, 127UL}) {
    Com<ITypeLib> library;
    EXPECT_EQ(::LoadRegTypeLib(ToGuid(identities::kLibraryId), 443, 16, locale, library.Out()),
              S_OK)
        << locale;
  }
}

// Hands the control to another apartment under the id, and back again; the other one calls it there
// by the virtual table.
void CallFromAnotherApartment(const Module& module, const GUID& id) {
  OnApartmentThread([&] {
    const auto control = module.CreateControl();
    EXPECT_EQ(control.As<ISecurityCtrl>(id)->put_ServerPort(8081), S_OK);
    LONG expected_crc = 0;
    EXPECT_EQ(control.As<ISecurityCtrl>(id)->GetCRCValue(&expected_crc), S_OK);
    Com<IStream> there;
    ASSERT_EQ(::CoMarshalInterThreadInterfaceInStream(id, control.Get(), there.Out()), S_OK);
    const DWORD owner = ::GetCurrentThreadId();
    Com<IStream> back;
    std::thread other([&] {
      ASSERT_TRUE(SUCCEEDED(::OleInitialize(nullptr)));
      {
        Com<ISecurityCtrl> proxy;
        const HRESULT result = ::CoUnmarshalInterface(there.Get(), id, proxy.OutVoid());
        EXPECT_EQ(result, S_OK) << std::hex << result;
        if (proxy) {
          EXPECT_NE(static_cast<IUnknown*>(proxy.Get()), control.Get());
          SHORT port = 0;
          EXPECT_EQ(proxy->get_ServerPort(&port), S_OK);
          EXPECT_EQ(port, 8081);
          EXPECT_EQ(proxy->put_UserName(Bstr(L"user").Get()), S_OK);
          LONG crc = 0;
          EXPECT_EQ(proxy->GetCRCValue(&crc), S_OK);
          EXPECT_EQ(crc, expected_crc);
          EXPECT_EQ(::CoMarshalInterThreadInterfaceInStream(id, proxy.Get(), back.Out()), S_OK);
        }
      }
      ::OleUninitialize();
      ::PostThreadMessageW(owner, WM_QUIT, 0, 0);
    });
    MSG message;
    while (::GetMessageW(&message, nullptr, 0, 0) > 0) ::DispatchMessageW(&message);
    other.join();
    Com<ISecurityCtrl> own;
    ASSERT_TRUE(back);
    EXPECT_EQ(::CoUnmarshalInterface(back.Get(), id, own.OutVoid()), S_OK);
    ASSERT_TRUE(own);
    EXPECT_EQ(own.As<IUnknown>(IID_IUnknown).Get(), control.Get()) << "at home it is itself again";
    Bstr user;
    EXPECT_EQ(own->get_UserName(user.Out()), S_OK);
    EXPECT_EQ(user.Text(), L"user");
  });
}

TEST_F(Registration, LetsAnotherApartmentCallTheVirtualTableOfEveryGeneration) {
  ASSERT_EQ(module_.Register(), S_OK);
  for (const auto& generation : identities::kGenerations) {
    SCOPED_TRACE(generation.entry);
    CallFromAnotherApartment(module_, ToGuid(generation.interface_id));
  }
}

TEST_F(Registration, LetsHostsFindTheMarshallingLibrary) {
  ASSERT_EQ(module_.Register(), S_OK);
  Com<ITypeLib> library;
  ASSERT_EQ(::LoadRegTypeLib(ToGuid(identities::kMarshallingId), 1, 0, 0, library.Out()), S_OK);
  EXPECT_EQ(library->GetTypeInfoCount(), 16U);
}

LSTATUS SetText(const std::wstring& path, const wchar_t* name, const std::wstring& text) {
  HKEY key = nullptr;
  const LSTATUS opened = ::RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_SET_VALUE, &key);
  if (opened != ERROR_SUCCESS) return opened;
  const LSTATUS set =
      ::RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                       static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  ::RegCloseKey(key);
  return set;
}

TEST_F(Registration, LeavesValuesOfOthersUnderItsKeys) {
  ASSERT_EQ(module_.Register(), S_OK);
  const std::wstring keys[] = {L"QuorvaneSecurity.SecurityCtrl\\CLSID", kClassKey + L"\\MiscStatus",
                               kMarshallingKey + L"\\1.0\\0", kEarlierKey + L"\\TypeLib"};
  for (const std::wstring& key : keys) {
    EXPECT_EQ(SetText(key, L"Foreign", L"x"), ERROR_SUCCESS);
  }
  EXPECT_EQ(module_.Unregister(), S_OK);
  Tree left = OwnKeys();
  for (const std::wstring& key : keys) {
    EXPECT_EQ(left[key + L"|Foreign"], L"x");
    ::RegDeleteKeyW(HKEY_CLASSES_ROOT, key.c_str());
  }
  for (const std::wstring& key : {kClassKey, std::wstring(L"QuorvaneSecurity.SecurityCtrl"),
                                  kMarshallingKey + L"\\1.0", kMarshallingKey, kEarlierKey}) {
    ::RegDeleteKeyW(HKEY_CLASSES_ROOT, key.c_str());
  }
  EXPECT_TRUE(OwnKeys().empty()) << "nothing else stayed";
}

TEST_F(Registration, SaysSoWhereMemoryRunsOut) {
  for (const bool is_removal : {false, true}) {
    if (is_removal) {
      EXPECT_EQ(module_.Register(), S_OK);
    }
    int failures = 1;
    int runs = 0;
    for (; failures > 0 && runs < 1000; ++runs) {
      HRESULT result = S_OK;
      {
        const FailingAllocations failing(module_.Handle(), runs + 1);
        result = is_removal ? module_.Unregister() : module_.Register();
        failures = FailingAllocations::Failures();
      }
      EXPECT_EQ(result, failures == 0 ? S_OK : E_OUTOFMEMORY) << runs;
    }
    EXPECT_GT(runs, 10);
    EXPECT_LT(runs, 1000);
  }
  EXPECT_TRUE(OwnKeys().empty());
}

// Calls of the system that a machine may refuse, from the n-th one on.
int calls_left = 0;
template <class Result>
Result Refused(Result refusal) {
  return --calls_left > 0 ? Result{} : refusal;
}
LSTATUS WINAPI NoKey(HKEY, LPCWSTR, DWORD, LPWSTR, DWORD, REGSAM, SECURITY_ATTRIBUTES*, HKEY*,
                     DWORD*) {
  return ERROR_ACCESS_DENIED;
}
LSTATUS WINAPI NoValue(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data,
                       DWORD size) {
  const LSTATUS refused = Refused<LSTATUS>(ERROR_ACCESS_DENIED);
  return refused != ERROR_SUCCESS ? refused
                                  : ::RegSetValueExW(key, name, reserved, type, data, size);
}
LSTATUS WINAPI NoOpening(HKEY, LPCWSTR, DWORD, REGSAM, HKEY*) { return ERROR_ACCESS_DENIED; }
LSTATUS WINAPI NoRemovalOfValues(HKEY key, LPCWSTR name) {
  const LSTATUS refused = Refused<LSTATUS>(ERROR_ACCESS_DENIED);
  return refused != ERROR_SUCCESS ? refused : ::RegDeleteValueW(key, name);
}
LSTATUS WINAPI NoRemovalOfKeys(HKEY, LPCWSTR) { return ERROR_ACCESS_DENIED; }
HRESULT WINAPI NoLibrary(LPCOLESTR, REGKIND, ITypeLib**) { return TYPE_E_CANTLOADLIBRARY; }
HRESULT WINAPI NoEntry(ITypeLib*, OLECHAR*, OLECHAR*) { return TYPE_E_REGISTRYACCESS; }
HRESULT WINAPI NoRemovalOfTheEntry(REFGUID, WORD, WORD, LCID, SYSKIND) {
  return TYPE_E_REGISTRYACCESS;
}

TEST_F(Registration, TellsThatTheTypeLibraryWasRefused) {
  {
    const ReplacedImport refused(module_.Handle(), "LoadTypeLibEx", NoLibrary);
    ASSERT_TRUE(refused.Took());
    EXPECT_EQ(module_.Register(), SELFREG_E_TYPELIB);
  }
  const ReplacedImport refused(module_.Handle(), "RegisterTypeLib", NoEntry);
  ASSERT_TRUE(refused.Took());
  EXPECT_EQ(module_.Register(), SELFREG_E_TYPELIB);
}

TEST_F(Registration, TellsThatAnyOfItsKeysOrValuesWasRefused) {
  {
    const ReplacedImport refused(module_.Handle(), "RegCreateKeyExW", NoKey);
    ASSERT_TRUE(refused.Took());
    EXPECT_EQ(module_.Register(), SELFREG_E_CLASS);
  }
  const ReplacedImport refused(module_.Handle(), "RegSetValueExW", NoValue);
  ASSERT_TRUE(refused.Took());
  int values = 0;
  HRESULT result = SELFREG_E_CLASS;
  for (; result == SELFREG_E_CLASS && values < 200; ++values) {
    calls_left = values + 1;
    result = module_.Register();
  }
  EXPECT_EQ(result, S_OK);
  EXPECT_EQ(values, 100) << "99 values, and a run in which none is refused";
}

TEST_F(Registration, TellsThatItsRemovalWasRefused) {
  ASSERT_EQ(module_.Register(), S_OK);
  const auto refuse = [this](const char* name, auto* refusal, HRESULT stated) {
    const ReplacedImport refused(module_.Handle(), name, refusal);
    ASSERT_TRUE(refused.Took()) << name;
    calls_left = 0;
    EXPECT_EQ(module_.Unregister(), stated) << name;
  };
  refuse("RegOpenKeyExW", NoOpening, SELFREG_E_CLASS);
  EXPECT_EQ(module_.Register(), S_OK);
  refuse("RegDeleteValueW", NoRemovalOfValues, SELFREG_E_CLASS);
  EXPECT_EQ(module_.Register(), S_OK);
  refuse("RegDeleteKeyW", NoRemovalOfKeys, SELFREG_E_CLASS);
  EXPECT_EQ(module_.Register(), S_OK);
  refuse("UnRegisterTypeLib", NoRemovalOfTheEntry, SELFREG_E_TYPELIB);
  EXPECT_EQ(module_.Unregister(), S_OK) << "and is done where nothing refuses";
}

// One refused value holds back its own key, and those above it, only.
TEST_F(Registration, RemovesWhatItCanWhereOneValueIsRefused) {
  ASSERT_EQ(module_.Register(), S_OK);
  const ReplacedImport refused(module_.Handle(), "RegDeleteValueW", NoRemovalOfValues);
  const std::size_t whole = OwnKeys().size();
  calls_left = 99;  // the last of 99: the name of the ProgID
  EXPECT_EQ(module_.Unregister(), SELFREG_E_CLASS);
  Tree left = OwnKeys();
  EXPECT_LT(left.size(), whole);
  EXPECT_EQ(left.size(), 2U);
  EXPECT_EQ(left[L"QuorvaneSecurity.SecurityCtrl|"], L"QuorvaneSecurity.SecurityCtrl");
}

TEST_F(Registration, LetsHostsCreateTheControlByClassAndByName) {
  ASSERT_EQ(module_.Register(), S_OK);
  OnApartmentThread([] {
    for (const IID& id : {IID_IUnknown, IID_IDispatch, IID_IOleObject}) {
      Com<IUnknown> control;
      EXPECT_EQ(::CoCreateInstance(kClassId, nullptr, CLSCTX_INPROC_SERVER, id, control.OutVoid()),
                S_OK);
    }
    CLSID id{};
    EXPECT_EQ(::CLSIDFromProgID(L"QuorvaneSecurity.SecurityCtrl", &id), S_OK);
    EXPECT_TRUE(IsEqualCLSID(id, kClassId));
    LPOLESTR name = nullptr;
    EXPECT_EQ(::ProgIDFromCLSID(kClassId, &name), S_OK);
    EXPECT_STREQ(name, L"QuorvaneSecurity.SecurityCtrl");
    ::CoTaskMemFree(name);
  });
}

TEST_F(Registration, MayBeRepeated) {
  ASSERT_EQ(module_.Register(), S_OK);
  const Tree once = OwnKeys();
  EXPECT_EQ(module_.Register(), S_OK);
  EXPECT_EQ(OwnKeys(), once);
}

TEST_F(Registration, IsRemovedWhole) {
  ASSERT_EQ(module_.Register(), S_OK);
  EXPECT_FALSE(OwnKeys().empty());
  EXPECT_EQ(module_.Unregister(), S_OK);
  EXPECT_TRUE(OwnKeys().empty());
  EXPECT_EQ(module_.Unregister(), S_OK) << "removing twice is no failure";
}

TEST_F(Registration, FollowsTheModuleToAnotherPlace) {
  const TemporaryFolder folder;
  const std::wstring copy = folder.File(L"moved.ocx");
  ASSERT_TRUE(::CopyFileW(QUORVANE_MODULE_FILE, copy.c_str(), TRUE));
  ASSERT_EQ(module_.Register(), S_OK);
  const Module moved(copy);
  EXPECT_EQ(moved.Register(), S_OK);
  wchar_t path[MAX_PATH];
  ::GetModuleFileNameW(moved.Handle(), path, MAX_PATH);
  EXPECT_EQ(OwnKeys()[kClassKey + L"\\InprocServer32|"], path);
  EXPECT_EQ(moved.Unregister(), S_OK);
}

}  // namespace
}  // namespace quorvane::component::registration_test
