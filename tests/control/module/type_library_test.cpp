// Proves the type library as the system reads it from the module: the library, the class, the
// interfaces and their ancestors.

#include "tests/support/component/module_under_test.h"

namespace quorvane::component::type_library_test {
namespace {

class TypeLibrary : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(::LoadTypeLibEx(QUORVANE_MODULE_FILE, REGKIND_NONE, library_.Out()), S_OK);
  }

  Com<ITypeInfo> TypeOf(const GUID& id) {
    Com<ITypeInfo> type;
    EXPECT_EQ(library_->GetTypeInfoOfGuid(id, type.Out()), S_OK);
    return type;
  }

  Com<ITypeLib> library_;
};

template <class Check>
void WithAttributes(const Com<ITypeInfo>& type, Check check) {
  TYPEATTR* attributes = nullptr;
  ASSERT_EQ(type->GetTypeAttr(&attributes), S_OK);
  check(*attributes);
  type->ReleaseTypeAttr(attributes);
}

std::string NameOf(const Com<ITypeInfo>& type, MEMBERID id = MEMBERID_NIL) {
  Bstr name;
  EXPECT_EQ(type->GetDocumentation(id, name.Out(), nullptr, nullptr, nullptr), S_OK);
  const std::wstring text = name.Text();
  std::string narrow;
  for (const wchar_t c : text) narrow += static_cast<char>(c);
  return narrow;
}

TEST_F(TypeLibrary, HasItsIdVersionLocaleAndFlags) {
  TLIBATTR* attributes = nullptr;
  ASSERT_EQ(library_->GetLibAttr(&attributes), S_OK);
  EXPECT_TRUE(IsEqualGUID(attributes->guid, ToGuid(identities::kLibraryId)));
  EXPECT_EQ(attributes->wMajorVerNum, 443);
  EXPECT_EQ(attributes->wMinorVerNum, 16);
  EXPECT_EQ(attributes->lcid, 1033U);
  EXPECT_EQ(attributes->syskind, SYS_WIN32);
  EXPECT_TRUE(attributes->wLibFlags & LIBFLAG_FCONTROL);
  library_->ReleaseTLibAttr(attributes);
  Bstr name;
  Bstr help;
  Bstr help_file;
  DWORD context = 99;
  ASSERT_EQ(library_->GetDocumentation(-1, name.Out(), help.Out(), &context, help_file.Out()),
            S_OK);
  EXPECT_EQ(name.Text(), L"QuorvaneSecurity");
  EXPECT_EQ(help.Text(), L"QuorvaneSecurity");
  EXPECT_NE(help_file.Text().find(L"SecurityOCX.chm"), std::wstring::npos);
  EXPECT_EQ(library_->GetTypeInfoCount(), 19U) << "class, two interfaces, sixteen ancestors";
}

TEST_F(TypeLibrary, HasTheControlsClassWithItsTwoInterfaces) {
  const auto type = TypeOf(kClassId);
  EXPECT_EQ(NameOf(type), "SecurityCtrl");
  WithAttributes(type, [](const TYPEATTR& attributes) {
    EXPECT_EQ(attributes.typekind, TKIND_COCLASS);
    EXPECT_EQ(attributes.wMajorVerNum, 1);
    EXPECT_EQ(attributes.wMinorVerNum, 16);
    EXPECT_EQ(attributes.wTypeFlags, TYPEFLAG_FCONTROL) << "not creatable from the library";
    EXPECT_EQ(attributes.cImplTypes, 2);
  });
  const auto implemented = [&type](UINT index, const GUID& id, INT flags) {
    INT got = 0;
    EXPECT_EQ(type->GetImplTypeFlags(index, &got), S_OK);
    EXPECT_EQ(got, flags);
    HREFTYPE reference = 0;
    ASSERT_EQ(type->GetRefTypeOfImplType(index, &reference), S_OK);
    Com<ITypeInfo> interface_type;
    ASSERT_EQ(type->GetRefTypeInfo(reference, interface_type.Out()), S_OK);
    WithAttributes(interface_type, [&](const TYPEATTR& attributes) {
      EXPECT_TRUE(IsEqualGUID(attributes.guid, id));
    });
  };
  implemented(0, kSecurityCtrlId, IMPLTYPEFLAG_FDEFAULT);
  implemented(1, kSourceId, IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE);
}

TEST_F(TypeLibrary, HasTheDualInterfaceWithItsMembersInOrder) {
  const auto type = TypeOf(kSecurityCtrlId);
  EXPECT_EQ(NameOf(type), "_SecurityCtrl");
  Com<ITypeInfo> table;
  HREFTYPE reference = 0;
  ASSERT_EQ(type->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference), S_OK);
  ASSERT_EQ(type->GetRefTypeInfo(reference, table.Out()), S_OK);
  WithAttributes(table, [](const TYPEATTR& attributes) {
    EXPECT_EQ(attributes.typekind, TKIND_INTERFACE);
    EXPECT_EQ(attributes.cFuncs, 15);
    EXPECT_EQ(attributes.wMinorVerNum, 16);
    EXPECT_EQ(attributes.cbSizeVft, (7 + 15) * 4);
    EXPECT_EQ(attributes.wTypeFlags & 0xFFFF, TYPEFLAG_FDUAL | TYPEFLAG_FHIDDEN |
                                                  TYPEFLAG_FDISPATCHABLE | TYPEFLAG_FOLEAUTOMATION |
                                                  TYPEFLAG_FNONEXTENSIBLE);
  });
  for (UINT i = 0; i < identities::kMembers.size(); ++i) {
    const auto& member = identities::kMembers[i];
    FUNCDESC* function = nullptr;
    ASSERT_EQ(table->GetFuncDesc(i, &function), S_OK) << i;
    EXPECT_EQ(function->memid, member.dispatch_id) << i;
    EXPECT_EQ(NameOf(table, function->memid), member.name) << i;
    EXPECT_EQ(function->oVft, static_cast<SHORT>((7 + i) * 4)) << i;
    EXPECT_EQ(function->callconv, CC_STDCALL);
    EXPECT_EQ(function->elemdescFunc.tdesc.vt, VT_HRESULT);
    EXPECT_EQ(function->cParams, 1);
    const auto kind = member.kind == identities::MemberKind::kPropertyPut   ? INVOKE_PROPERTYPUT
                      : member.kind == identities::MemberKind::kPropertyGet ? INVOKE_PROPERTYGET
                                                                            : INVOKE_FUNC;
    EXPECT_EQ(function->invkind, kind) << i;
    const VARTYPE types[] = {VT_BSTR, VT_I2, VT_BOOL, VT_I4};
    const VARTYPE expected = types[static_cast<int>(member.type)];
    const ELEMDESC& parameter = function->lprgelemdescParam[0];
    if (kind == INVOKE_PROPERTYPUT) {
      EXPECT_EQ(parameter.tdesc.vt, expected) << i;
      EXPECT_EQ(parameter.paramdesc.wParamFlags, PARAMFLAG_FIN) << i;
    } else {
      ASSERT_EQ(parameter.tdesc.vt, VT_PTR) << i;
      EXPECT_EQ(parameter.tdesc.lptdesc->vt, expected) << i;
      EXPECT_EQ(parameter.paramdesc.wParamFlags, PARAMFLAG_FOUT | PARAMFLAG_FRETVAL) << i;
    }
    table->ReleaseFuncDesc(function);
  }
}

// A reader asks by the dispatch id, so it is told of the first of the two members that bear it. In
// the interface that has an argument in any case; in its dispatch half a get has none, so where the
// get comes first no name of an argument can be told there.
TEST_F(TypeLibrary, GivesTheNamesOfTheArgumentsOfAllPuts) {
  const auto type = TypeOf(kSecurityCtrlId);
  Com<ITypeInfo> table;
  HREFTYPE reference = 0;
  ASSERT_EQ(type->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference), S_OK);
  ASSERT_EQ(type->GetRefTypeInfo(reference, table.Out()), S_OK);
  const auto argument_of = [](const Com<ITypeInfo>& half, MEMBERID id) {
    BSTR names[2]{};
    UINT count = 0;
    EXPECT_EQ(half->GetNames(id, names, 2, &count), S_OK);
    const std::wstring argument = count == 2 ? names[1] : L"(none)";
    for (BSTR name : names) ::SysFreeString(name);
    return argument;
  };
  for (const auto& property : identities::kProperties) {
    const std::string narrow = property.argument;
    const std::wstring argument(narrow.begin(), narrow.end());
    EXPECT_EQ(argument_of(table, property.dispatch_id), argument);
    EXPECT_EQ(argument_of(type, property.dispatch_id),
              property.first == identities::First::kPut ? argument : L"(none)");
  }
}

TEST_F(TypeLibrary, HasAnEmptySourceInterface) {
  const auto type = TypeOf(kSourceId);
  EXPECT_EQ(NameOf(type), "__SecurityCtrl");
  WithAttributes(type, [](const TYPEATTR& attributes) {
    EXPECT_EQ(attributes.typekind, TKIND_DISPATCH);
    EXPECT_EQ(attributes.cFuncs, 0);
    EXPECT_EQ(attributes.cVars, 0);
    EXPECT_EQ(attributes.wMajorVerNum, 1);
    EXPECT_EQ(attributes.wMinorVerNum, 16);
    EXPECT_EQ(attributes.wTypeFlags,
              TYPEFLAG_FHIDDEN | TYPEFLAG_FDISPATCHABLE | TYPEFLAG_FNONEXTENSIBLE);
  });
}

TEST_F(TypeLibrary, HasAHiddenAliasForEachEarlierInterface) {
  for (const auto& generation : identities::kGenerations) {
    if (&generation == &identities::kPresent) continue;
    const auto type = TypeOf(ToGuid(generation.interface_id));
    EXPECT_EQ(NameOf(type), generation.entry);
    WithAttributes(type, [&](const TYPEATTR& attributes) {
      EXPECT_EQ(attributes.typekind, TKIND_ALIAS);
      EXPECT_EQ(attributes.wTypeFlags, TYPEFLAG_FHIDDEN);
      EXPECT_EQ(attributes.wMajorVerNum, 1);
      EXPECT_EQ(attributes.wMinorVerNum, generation.minor_version);
      ASSERT_EQ(attributes.tdescAlias.vt, VT_USERDEFINED);
      Com<ITypeInfo> target;
      ASSERT_EQ(type->GetRefTypeInfo(attributes.tdescAlias.hreftype, target.Out()), S_OK);
      EXPECT_EQ(NameOf(target), "_SecurityCtrl");
    });
  }
}

}  // namespace
}  // namespace quorvane::component::type_library_test
