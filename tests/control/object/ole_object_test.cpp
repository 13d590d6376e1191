// Proves the control as an OLE object, apart from activation: site, extents and the size lock,
// verbs, names, advice, closing.

#include <malloc.h>

#include <climits>
#include <cstring>
#include <utility>
#include <vector>

#include "tests/support/component/fake_sinks.h"
#include "tests/support/component/fake_site.h"
#include "tests/support/component/module_under_test.h"

namespace quorvane::component::ole_object_test {
namespace {

constexpr LONG kExtent = 741;  // 420 twips in 1/100 mm, rounded

template <class Body>
void WithControl(Body body) {
  OnApartmentThread([&body] {
    const Module module;
    {
      const auto control = module.CreateControl();
      const auto object = control.As<IOleObject>();
      body(control, object);
    }
    EXPECT_EQ(module.CanUnloadNow(), S_OK);
  });
}

TEST(MiscStatus, IsTheFixedValueBeforeSiteAndInitialisation) {
  WithControl([](auto&, auto& object) {
    DWORD status = 0;
    EXPECT_EQ(object->GetMiscStatus(DVASPECT_CONTENT, &status), S_OK);
    EXPECT_EQ(status, 148881U);
    EXPECT_EQ(object->GetMiscStatus(DVASPECT_ICON, &status), S_OK);
    EXPECT_EQ(status, 0U) << "nothing is said of other aspects";
    EXPECT_EQ(object->GetMiscStatus(DVASPECT_CONTENT, nullptr), E_POINTER);
  });
}

TEST(Extent, StaysLockedWhateverARequestSays) {
  WithControl([](auto& control, auto& object) {
    for (const SIZEL& asked : {SIZEL{0, 0}, SIZEL{741, 741}, SIZEL{6615, 6615}, SIZEL{-5, 100000},
                               SIZEL{LONG_MAX, LONG_MIN}}) {
      SIZEL size = asked;
      EXPECT_EQ(object->SetExtent(DVASPECT_CONTENT, &size), S_OK);
      SIZEL got{};
      EXPECT_EQ(object->GetExtent(DVASPECT_CONTENT, &got), S_OK);
      EXPECT_EQ(got.cx, kExtent);
      EXPECT_EQ(got.cy, kExtent);
      SIZEL drawn{};
      EXPECT_EQ(
          control.template As<IViewObject2>()->GetExtent(DVASPECT_CONTENT, -1, nullptr, &drawn),
          S_OK);
      EXPECT_EQ(drawn.cx, kExtent);
      EXPECT_EQ(drawn.cy, kExtent);
    }
  });
}

// Puts another size into the control's own memory, where nothing else can: what a request finds
// there must not matter.
void Unlock(const Com<IUnknown>& control) {
  constexpr SIZEL kLocked{kExtent, kExtent};
  constexpr SIZEL kOther{1, 2};
  auto* const bytes = reinterpret_cast<BYTE*>(control.Get());
  std::vector<BYTE*> places;
  for (std::size_t i = 0; i + sizeof kLocked <= ::_msize(bytes); i += alignof(SIZEL)) {
    if (std::memcmp(bytes + i, &kLocked, sizeof kLocked) == 0) places.push_back(bytes + i);
  }
  ASSERT_EQ(places.size(), 1U);
  std::memcpy(places.front(), &kOther, sizeof kOther);
}

TEST(Extent, IsLockedAnewAtEachRequestForAnySize) {
  WithControl([](auto& control, auto& object) {
    const auto in_place = object.template As<IOleInPlaceObject>();
    const RECT somewhere{1, 2, 29, 30};
    SIZEL size{kExtent, kExtent};
    for (const bool by_rectangle : {true, false}) {
      Unlock(control);
      EXPECT_EQ(object->GetExtent(DVASPECT_CONTENT, &size), S_OK);
      EXPECT_EQ(size.cx, 1);
      EXPECT_EQ(by_rectangle ? in_place->SetObjectRects(&somewhere, &somewhere)
                             : object->SetExtent(DVASPECT_CONTENT, &size),
                S_OK);
      EXPECT_EQ(object->GetExtent(DVASPECT_CONTENT, &size), S_OK);
      EXPECT_EQ(size.cx, kExtent) << by_rectangle;
      EXPECT_EQ(size.cy, kExtent) << by_rectangle;
    }
  });
}

TEST(Extent, IsKnownForContentOnly) {
  WithControl([](auto& control, auto& object) {
    const auto view = control.template As<IViewObject2>();
    SIZEL size{741, 741};
    EXPECT_EQ(object->SetExtent(DVASPECT_CONTENT, nullptr), E_POINTER);
    EXPECT_EQ(object->GetExtent(DVASPECT_CONTENT, nullptr), E_POINTER);
    for (const DWORD aspect : {DVASPECT_ICON, DVASPECT_THUMBNAIL, DVASPECT_DOCPRINT}) {
      EXPECT_EQ(object->SetExtent(aspect, &size), DV_E_DVASPECT);
      EXPECT_EQ(object->GetExtent(aspect, &size), DV_E_DVASPECT);
      EXPECT_EQ(size.cx, 0);
      EXPECT_EQ(size.cy, 0);
      size = {741, 741};
      EXPECT_EQ(view->GetExtent(aspect, -1, nullptr, &size), DV_E_DVASPECT);
      EXPECT_EQ(size.cx, 0);
      EXPECT_EQ(size.cy, 0);
      size = {741, 741};
    }
  });
}

TEST(Site, IsCountedWhileItIsSet) {
  WithControl([](auto&, auto& object) {
    FakeSite first;
    FakeSite second;
    EXPECT_EQ(object->SetClientSite(first.Site()), S_OK);
    EXPECT_EQ(first.References(), 2U);
    {
      Com<IOleClientSite> got;
      EXPECT_EQ(object->GetClientSite(got.Out()), S_OK);
      EXPECT_EQ(got.Get(), first.Site());
    }
    EXPECT_EQ(object->SetClientSite(first.Site()), S_OK) << "twice the same";
    EXPECT_EQ(object->SetClientSite(second.Site()), S_OK);
    EXPECT_EQ(first.References(), 1U);
    EXPECT_EQ(second.References(), 2U);
    EXPECT_EQ(object->SetClientSite(nullptr), S_OK);
    EXPECT_EQ(second.References(), 1U);
    auto* none = reinterpret_cast<IOleClientSite*>(0x1234);
    EXPECT_EQ(object->GetClientSite(&none), S_OK);
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(object->GetClientSite(nullptr), E_POINTER);
  });
}

TEST(Site, IsLetGoWithTheControl) {
  FakeSite site;
  WithControl([&](auto&, auto& object) { EXPECT_EQ(object->SetClientSite(site.Site()), S_OK); });
  EXPECT_EQ(site.References(), 1U);
}

TEST(OleObject, ToleratesHostNamesAndAmbientChanges) {
  WithControl([](auto& control, auto& object) {
    EXPECT_EQ(object->SetHostNames(L"host", nullptr), S_OK);
    EXPECT_EQ(object->SetHostNames(L"host", L"form"), S_OK);
    EXPECT_EQ(object->Update(), S_OK);
    EXPECT_EQ(object->IsUpToDate(), S_OK);
    const auto ole_control = control.template As<IOleControl>();
    CONTROLINFO info{};
    info.cb = sizeof(info);
    info.hAccel = reinterpret_cast<HACCEL>(1);
    info.cAccel = 7;
    info.dwFlags = 7;
    EXPECT_EQ(ole_control->GetControlInfo(&info), S_OK);
    EXPECT_EQ(info.hAccel, nullptr);
    EXPECT_EQ(info.cAccel, 0);
    EXPECT_EQ(info.dwFlags, 0U);
    EXPECT_EQ(ole_control->GetControlInfo(nullptr), E_POINTER);
    EXPECT_EQ(ole_control->OnMnemonic(nullptr), S_OK);
    EXPECT_EQ(ole_control->OnAmbientPropertyChange(DISPID_UNKNOWN), S_OK);
    EXPECT_EQ(ole_control->FreezeEvents(TRUE), S_OK);
    EXPECT_EQ(ole_control->FreezeEvents(FALSE), S_OK);
  });
}

TEST(OleObject, GivesItsUserTypeAsTaskMemory) {
  WithControl([](auto&, auto& object) {
    for (const DWORD form : {USERCLASSTYPE_FULL, USERCLASSTYPE_SHORT, USERCLASSTYPE_APPNAME}) {
      LPOLESTR name = nullptr;
      EXPECT_EQ(object->GetUserType(form, &name), S_OK);
      ASSERT_NE(name, nullptr);
      EXPECT_EQ(std::wstring(name), L"SecurityCtrl");
      ::CoTaskMemFree(name);
    }
    EXPECT_EQ(object->GetUserType(USERCLASSTYPE_FULL, nullptr), E_POINTER);
  });
}

TEST(OleObject, LeavesOptionalCallsUnimplemented) {
  WithControl([](auto&, auto& object) {
    auto* moniker = reinterpret_cast<IMoniker*>(0x1234);
    EXPECT_EQ(object->SetMoniker(OLEWHICHMK_CONTAINER, nullptr), E_NOTIMPL);
    EXPECT_EQ(object->GetMoniker(OLEGETMONIKER_ONLYIFTHERE, OLEWHICHMK_OBJFULL, &moniker),
              E_NOTIMPL);
    EXPECT_EQ(moniker, nullptr);
    EXPECT_EQ(object->GetMoniker(OLEGETMONIKER_ONLYIFTHERE, OLEWHICHMK_OBJFULL, nullptr),
              E_NOTIMPL);
    EXPECT_EQ(object->InitFromData(nullptr, FALSE, 0), E_NOTIMPL);
    auto* data = reinterpret_cast<IDataObject*>(0x1234);
    EXPECT_EQ(object->GetClipboardData(0, &data), E_NOTIMPL);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(object->GetClipboardData(0, nullptr), E_NOTIMPL);
    EXPECT_EQ(object->SetColorScheme(nullptr), E_NOTIMPL);
  });
}

TEST(OleObject, ListsNoVerbsAndAtFirstNoSinks) {
  WithControl([](auto&, auto& object) {
    auto* verbs = reinterpret_cast<IEnumOLEVERB*>(0x1234);
    EXPECT_EQ(object->EnumVerbs(&verbs), OLEOBJ_E_NOVERBS);
    EXPECT_EQ(verbs, nullptr);
    EXPECT_EQ(object->EnumVerbs(nullptr), E_POINTER);
    auto* sinks = reinterpret_cast<IEnumSTATDATA*>(0x1234);
    EXPECT_EQ(object->EnumAdvise(&sinks), S_OK);
    EXPECT_EQ(sinks, nullptr);
    EXPECT_EQ(object->EnumAdvise(nullptr), E_POINTER);
  });
}

TEST(OleObject, TellsAdviseSinksOfItsClosing) {
  WithControl([](auto&, auto& object) {
    FakeAdviseSink sink;
    DWORD cookie = 0;
    EXPECT_EQ(object->Advise(&sink, &cookie), S_OK) << "also before any site";
    EXPECT_EQ(object->Close(OLECLOSE_NOSAVE), S_OK);
    EXPECT_EQ(sink.closes, 1);
    EXPECT_EQ(object->Close(OLECLOSE_NOSAVE), S_OK) << "repeatable";
    EXPECT_EQ(object->Unadvise(cookie), S_OK);
    EXPECT_EQ(sink.References(), 1U);
    EXPECT_EQ(object->Unadvise(cookie), OLE_E_NOCONNECTION);
    EXPECT_EQ(object->Advise(&sink, nullptr), E_POINTER);
  });
}

HRESULT WINAPI NoHolder(IOleAdviseHolder**) { return E_OUTOFMEMORY; }

TEST(OleObject, SaysThatNoSinkCanBeHeld) {
  WithControl([](auto&, auto& object) {
    FakeAdviseSink sink;
    DWORD cookie = 7;
    {
      const testing::ReplacedImport refused(::GetModuleHandleW(QUORVANE_MODULE_FILE),
                                            "CreateOleAdviseHolder", NoHolder);
      ASSERT_TRUE(refused.Took());
      EXPECT_EQ(object->Advise(&sink, &cookie), E_OUTOFMEMORY);
      EXPECT_EQ(cookie, 0U);
    }
    EXPECT_EQ(object->Advise(&sink, &cookie), S_OK) << "asked for anew";
    EXPECT_EQ(object->Unadvise(cookie), S_OK);
  });
}

// A sink that gives back the control's last reference as soon as somebody counts the sink.
class ReleasingSink final : public FakeUnknown<IAdviseSink> {
 public:
  ULONG STDMETHODCALLTYPE AddRef() override {
    if (released != nullptr) left = std::exchange(released, nullptr)->Release();
    return FakeUnknown::AddRef();
  }
  void STDMETHODCALLTYPE OnDataChange(FORMATETC*, STGMEDIUM*) override {}
  void STDMETHODCALLTYPE OnViewChange(DWORD, LONG) override {}
  void STDMETHODCALLTYPE OnRename(IMoniker*) override {}
  void STDMETHODCALLTYPE OnSave() override {}
  void STDMETHODCALLTYPE OnClose() override {}
  IOleObject* released = nullptr;
  ULONG left = 0;  ///< references to the control after that

 private:
  void* Find(REFIID) override { return this; }
};

TEST(OleObject, LivesThroughTheCallsOfItsAdviseSinks) {
  for (const bool on_advise : {true, false}) {
    OnApartmentThread([on_advise] {
      const Module module;
      ReleasingSink sink;
      auto object = module.CreateControl().As<IOleObject>();
      IOleObject* const last = object.Get();
      last->AddRef();
      object.Reset();
      if (!on_advise) {
        DWORD cookie = 0;
        EXPECT_EQ(last->Advise(&sink, &cookie), S_OK);
      }
      sink.released = last;
      DWORD cookie = 0;
      Com<IEnumSTATDATA> sinks;
      (void)(on_advise ? last->Advise(&sink, &cookie) : last->EnumAdvise(sinks.Out()));
      EXPECT_EQ(sink.released, nullptr) << "the sink was counted";
      EXPECT_EQ(sink.left, 1U) << "held by the call itself";
      sinks.Reset();
      EXPECT_EQ(sink.References(), 1U);
      EXPECT_EQ(module.CanUnloadNow(), S_OK);
    });
  }
}

TEST(OleObject, AsksForSavingOnCloseWhenDirty) {
  WithControl([](auto& control, auto& object) {
    FakeSite site;
    EXPECT_EQ(object->SetClientSite(site.Site()), S_OK);
    EXPECT_EQ(object->Close(OLECLOSE_SAVEIFDIRTY), S_OK);
    EXPECT_FALSE(site.WasTold("SaveObject")) << "clean";
    Com<ISecurityCtrl> security = control.template As<ISecurityCtrl>(kSecurityCtrlId);
    EXPECT_EQ(security->put_ServerPort(3), S_OK);
    EXPECT_EQ(object->Close(OLECLOSE_NOSAVE), S_OK);
    EXPECT_FALSE(site.WasTold("SaveObject"));
    EXPECT_EQ(object->Close(OLECLOSE_SAVEIFDIRTY), S_OK);
    EXPECT_TRUE(site.WasTold("SaveObject"));
    EXPECT_EQ(object->SetClientSite(nullptr), S_OK);
  });
}

TEST(OleObject, GivesItsClassTypeForScriptEvents) {
  WithControl([](auto& control, auto&) {
    const auto provider = control.template As<IProvideClassInfo2>();
    Com<ITypeInfo> type;
    ASSERT_EQ(provider->GetClassInfo(type.Out()), S_OK);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(type->GetTypeAttr(&attributes), S_OK);
    EXPECT_EQ(attributes->typekind, TKIND_COCLASS);
    EXPECT_TRUE(IsEqualGUID(attributes->guid, kClassId));
    type->ReleaseTypeAttr(attributes);
    GUID source{};
    EXPECT_EQ(provider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &source), S_OK);
    EXPECT_TRUE(IsEqualGUID(source, kSourceId));
    EXPECT_EQ(provider->GetGUID(99, &source), E_INVALIDARG);
    EXPECT_EQ(provider->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, nullptr), E_POINTER);
    EXPECT_EQ(provider->GetClassInfo(nullptr), E_POINTER);
  });
}

}  // namespace
}  // namespace quorvane::component::ole_object_test
