// Proves the late-bound half of the interface: names, ids, Invoke with right and wrong arguments.

#include "tests/support/component/module_under_test.h"

namespace quorvane::component::dispatch_test {
namespace {

constexpr DISPID kServerAddress = 0x6803000D;
constexpr DISPID kServerPort = 0x68030053;
constexpr DISPID kUseProxy = 0x68030048;
constexpr DISPID kGetCrcValue = 0x6003005E;

Com<IDispatch> NewControl(const Module& module) { return module.CreateControl().As<IDispatch>(); }

HRESULT NameToId(const Com<IDispatch>& control, const wchar_t* name, DISPID* id) {
  auto* writable = const_cast<LPOLESTR>(name);
  return control->GetIDsOfNames(IID_NULL, &writable, 1, LOCALE_USER_DEFAULT, id);
}

HRESULT Put(const Com<IDispatch>& control, DISPID id, Variant value) {
  DISPID named = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{value.Get(), &named, 1, 1};
  return control->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &parameters,
                         nullptr, nullptr, nullptr);
}

HRESULT Get(const Com<IDispatch>& control, DISPID id, Variant& result,
            WORD flags = DISPATCH_PROPERTYGET) {
  DISPPARAMS none{};
  return control->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &none, result.Get(), nullptr,
                         nullptr);
}

TEST(Dispatch, KnowsEachMemberByItsNameInAnyCase) {
  OnApartmentThread([] {
    const Module module;
    const auto control = NewControl(module);
    for (const auto& member : identities::kMembers) {
      std::wstring name(member.name, member.name + std::strlen(member.name));
      DISPID id = 0;
      EXPECT_EQ(NameToId(control, name.c_str(), &id), S_OK) << member.name;
      EXPECT_EQ(id, member.dispatch_id) << member.name;
      for (wchar_t& c : name) c = static_cast<wchar_t>(::towupper(c));
      EXPECT_EQ(NameToId(control, name.c_str(), &id), S_OK) << member.name;
      EXPECT_EQ(id, member.dispatch_id) << member.name;
    }
  });
}

TEST(Dispatch, RefusesUnknownNames) {
  OnApartmentThread([] {
    const Module module;
    const auto control = NewControl(module);
    for (const wchar_t* name : {L"Username2", L"", L"Server", L"SetServerPort"}) {
      DISPID id = 0;
      EXPECT_EQ(NameToId(control, name, &id), DISP_E_UNKNOWNNAME);
      EXPECT_EQ(id, DISPID_UNKNOWN);
    }
  });
}

TEST(Dispatch, WantsTheNullInterfaceId) {
  OnApartmentThread([] {
    const Module module;
    const auto control = NewControl(module);
    DISPPARAMS none{};
    Variant result;
    EXPECT_EQ(control->Invoke(kServerPort, IID_IDispatch, 0, DISPATCH_PROPERTYGET, &none,
                              result.Get(), nullptr, nullptr),
              DISP_E_UNKNOWNINTERFACE);
    auto* name = const_cast<LPOLESTR>(L"ServerPort");
    DISPID id = 0;
    EXPECT_EQ(control->GetIDsOfNames(IID_IDispatch, &name, 1, 0, &id), DISP_E_UNKNOWNINTERFACE);
  });
}

TEST(Dispatch, PutsAndGetsEveryKindOfProperty) {
  OnApartmentThread([] {
    const Module module;
    const auto control = NewControl(module);
    Variant result;
    EXPECT_EQ(Put(control, kServerAddress, Variant(L"host")), S_OK);
    EXPECT_EQ(Get(control, kServerAddress, result), S_OK);
    EXPECT_EQ(result.Text(), L"host");
    EXPECT_EQ(Put(control, kServerPort, Variant::Integer16(-1)), S_OK);
    EXPECT_EQ(Get(control, kServerPort, result), S_OK);
    EXPECT_EQ(result->vt, VT_I2);
    EXPECT_EQ(result->iVal, -1);
    EXPECT_EQ(Put(control, kUseProxy, Variant::Boolean(true)), S_OK);
    EXPECT_EQ(Get(control, kUseProxy, result), S_OK);
    EXPECT_EQ(result->vt, VT_BOOL);
    EXPECT_EQ(result->boolVal, VARIANT_TRUE);
  });
}

TEST(Dispatch, ConvertsArgumentsAsAutomationDoes) {
  OnApartmentThread([] {
    const Module module;
    const auto control = NewControl(module);
    Variant result;
    EXPECT_EQ(Put(control, kServerPort, Variant(L" 8080 ")), S_OK);
    EXPECT_EQ(Get(control, kServerPort, result), S_OK);
    EXPECT_EQ(result->iVal, 8080);
    EXPECT_EQ(Put(control, kServerAddress, Variant::Integer32(12)), S_OK);
    EXPECT_EQ(Get(control, kServerAddress, result), S_OK);
    EXPECT_EQ(result.Text(), L"12");
  });
}

TEST(Dispatch, MakesAnIntegerABooleanAndLeavesABooleansBits) {
  OnApartmentThread([] {
    const Module module;
    const auto control = NewControl(module);
    Variant result;
    EXPECT_EQ(Put(control, kUseProxy, Variant::Integer16(1)), S_OK);
    EXPECT_EQ(Get(control, kUseProxy, result), S_OK);
    EXPECT_EQ(result->vt, VT_BOOL);
    EXPECT_EQ(result->boolVal, VARIANT_TRUE);
    Variant raw = Variant::Boolean(true);
    raw.Get()->boolVal = 1;
    EXPECT_EQ(Put(control, kUseProxy, raw), S_OK);
    EXPECT_EQ(Get(control, kUseProxy, result), S_OK);
    EXPECT_EQ(result->boolVal, 1);
  });
}

TEST(Dispatch, RefusesArgumentsOfNoUse) {
  OnApartmentThread([] {
    const Module module;
    const auto control = NewControl(module);
    EXPECT_EQ(Put(control, kServerPort, Variant::Integer16(7)), S_OK);
    EXPECT_EQ(Put(control, kServerPort, Variant(L"eighty")), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(Put(control, kServerPort, Variant::Integer32(70000)), DISP_E_OVERFLOW);
    Variant result;
    EXPECT_EQ(Get(control, kServerPort, result), S_OK);
    EXPECT_EQ(result->iVal, 7) << "a refused put stores nothing";
  });
}

// Whoever asks behind a failed call is told of that call, or of none.
TEST(Dispatch, LeavesNoErrorOfAnEarlierCall) {
  OnApartmentThread([] {
    const Module module;
    const auto control = NewControl(module);
    Com<ICreateErrorInfo> earlier;
    ASSERT_EQ(::CreateErrorInfo(earlier.Out()), S_OK);
    ::SetErrorInfo(0, earlier.As<IErrorInfo>().Get());
    EXPECT_EQ(Put(control, kServerPort, Variant(L"eighty")), DISP_E_TYPEMISMATCH);
    Com<IErrorInfo> told;
    EXPECT_EQ(::GetErrorInfo(0, told.Out()), S_FALSE);
  });
}

TEST(Dispatch, RefusesWrongCountsOfArguments) {
  OnApartmentThread([] {
    const Module module;
    const auto control = NewControl(module);
    Variant one = Variant::Integer16(1);
    Variant result;
    DISPPARAMS extra{one.Get(), nullptr, 1, 0};
    EXPECT_TRUE(FAILED(control->Invoke(kServerPort, IID_NULL, 0, DISPATCH_PROPERTYGET, &extra,
                                       result.Get(), nullptr, nullptr)));
    EXPECT_EQ(control->Invoke(kGetCrcValue, IID_NULL, 0, DISPATCH_METHOD, &extra, result.Get(),
                              nullptr, nullptr),
              DISP_E_BADPARAMCOUNT);
    DISPPARAMS none{};
    EXPECT_TRUE(FAILED(control->Invoke(kServerPort, IID_NULL, 0, DISPATCH_PROPERTYPUT, &none,
                                       nullptr, nullptr, nullptr)));
    EXPECT_TRUE(FAILED(control->Invoke(kServerPort, IID_NULL, 0, DISPATCH_PROPERTYGET, nullptr,
                                       result.Get(), nullptr, nullptr)));
  });
}

TEST(Dispatch, RefusesUnknownMembers) {
  OnApartmentThread([] {
    const Module module;
    const auto control = NewControl(module);
    for (const DISPID id : std::initializer_list<DISPID>{
             DISPID_READYSTATE, DISPID_ENABLED, DISPID_VALID, DISPID_VALUE, -3, 0x60020000}) {
      Variant result;
      EXPECT_EQ(Get(control, id, result), DISP_E_MEMBERNOTFOUND) << id;
    }
    Variant result;
    EXPECT_EQ(Get(control, kGetCrcValue, result, DISPATCH_PROPERTYPUT), DISP_E_MEMBERNOTFOUND);
  });
}

TEST(Dispatch, LetsEveryOutPointerBeNull) {
  OnApartmentThread([] {
    const Module module;
    const auto control = NewControl(module);
    DISPPARAMS none{};
    EXPECT_EQ(control->Invoke(kServerPort, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, nullptr,
                              nullptr, nullptr),
              S_OK);
  });
}

TEST(Dispatch, TakesAMethodCallAndAPropertyGetTogether) {
  OnApartmentThread([] {
    const Module module;
    const auto control = NewControl(module);
    Variant result;
    EXPECT_EQ(Get(control, kGetCrcValue, result, DISPATCH_METHOD | DISPATCH_PROPERTYGET), S_OK);
    EXPECT_EQ(result->vt, VT_I4);
    EXPECT_EQ(Get(control, kServerPort, result, DISPATCH_METHOD | DISPATCH_PROPERTYGET), S_OK);
    EXPECT_EQ(result->vt, VT_I2);
  });
}

TEST(Dispatch, TellsItsTypeFromTheModulesOwnLibrary) {
  OnApartmentThread([] {
    const Module module;
    const auto control = NewControl(module);
    UINT count = 0;
    EXPECT_EQ(control->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1U);
    Com<ITypeInfo> type;
    ASSERT_EQ(control->GetTypeInfo(0, LOCALE_USER_DEFAULT, type.Out()), S_OK);
    Com<ITypeLib> library;
    UINT index = 0;
    ASSERT_EQ(type->GetContainingTypeLib(library.Out(), &index), S_OK);
    TLIBATTR* attributes = nullptr;
    ASSERT_EQ(library->GetLibAttr(&attributes), S_OK);
    EXPECT_TRUE(IsEqualGUID(attributes->guid, ToGuid(identities::kLibraryId)));
    library->ReleaseTLibAttr(attributes);
    void* out = reinterpret_cast<void*>(0x1234);
    EXPECT_EQ(control->GetTypeInfo(1, 0, reinterpret_cast<ITypeInfo**>(&out)), DISP_E_BADINDEX);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(control->GetTypeInfo(0, 0, nullptr), E_POINTER);
    EXPECT_EQ(control->GetTypeInfoCount(nullptr), E_POINTER);
  });
}

HRESULT WINAPI NoLibrary(LPCOLESTR, REGKIND, ITypeLib**) { return TYPE_E_CANTLOADLIBRARY; }

TEST(Dispatch, SaysWhereItsLibraryCannotBeLoaded) {
  OnApartmentThread([] {
    const Module module;
    const auto control = NewControl(module);
    {
      const testing::ReplacedImport refused(module.Handle(), "LoadTypeLibEx", NoLibrary);
      ASSERT_TRUE(refused.Took());
      auto* type = reinterpret_cast<ITypeInfo*>(0x1234);
      EXPECT_EQ(control->GetTypeInfo(0, 0, &type), TYPE_E_CANTLOADLIBRARY);
      EXPECT_EQ(type, nullptr);
      type = reinterpret_cast<ITypeInfo*>(0x1234);
      EXPECT_EQ(control.As<IProvideClassInfo>()->GetClassInfo(&type), TYPE_E_CANTLOADLIBRARY);
      EXPECT_EQ(type, nullptr);
      DISPID id = 0;
      EXPECT_EQ(NameToId(control, L"ServerPort", &id), TYPE_E_CANTLOADLIBRARY);
      Variant value;
      EXPECT_EQ(Get(control, kServerPort, value), TYPE_E_CANTLOADLIBRARY);
    }
    DISPID id = 0;
    EXPECT_EQ(NameToId(control, L"ServerPort", &id), S_OK) << "asked for anew";
  });
}

}  // namespace
}  // namespace quorvane::component::dispatch_test
