// Replays what five kinds of real containers do with a control, in their order and with their odd
// answers, and hosts it in the system's own ActiveX host window. Proves that each ends with the
// loaded settings, no crash and nothing left behind.

#include "tests/support/component/fake_bags.h"
#include "tests/support/component/fake_sinks.h"
#include "tests/support/component/fake_site.h"
#include "tests/support/component/fake_stream.h"
#include "tests/support/component/host_window.h"
#include "tests/support/component/module_under_test.h"
#include "tests/support/component/values.h"

namespace quorvane::component::containers_test {
namespace {

template <class Replay>
void OnHostThread(Replay replay) {
  OnApartmentThread([&replay] {
    const Module module;
    replay(module);
    EXPECT_EQ(module.CanUnloadNow(), S_OK) << "the container left nothing behind";
  });
}

FakeBag SavedForm() {
  FakeBag bag;
  bag.entries = {{L"ServerAddress", Variant(L"host")}, {L"ServerPort", Variant::Integer16(8081)}};
  return bag;
}

// Initialised before any site; extents cut to 1/100 inch; ended by Close and the loss of the site,
// without deactivation.
TEST(Containers, HostWindowThatInitialisesBeforeTheSite) {
  OnHostThread([](const Module& module) {
    const HostWindow window;
    FakeSite site(FakeSite::Offers::kInPlaceSite, window.Get());
    site.failing_call = "OnPosRectChange";
    Com<IOleObject> object;
    ASSERT_EQ(module.ClassObject()->CreateInstance(nullptr, IID_IOleObject, object.OutVoid()),
              S_OK);
    EXPECT_EQ(object.As<IPersistStreamInit>()->InitNew(), S_OK);
    object->SetClientSite(site.Site());
    object->SetHostNames(L"AXWIN", L"AXWIN");
    SIZEL size{29 * 100, 29 * 100};
    object->SetExtent(DVASPECT_CONTENT, &size);
    RECT client{0, 0, 300, 300};
    EXPECT_EQ(
        object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site.Site(), 0, window.Get(), &client),
        S_OK);
    const auto in_place = object.As<IOleInPlaceObject>();
    EXPECT_EQ(in_place->SetObjectRects(&client, &client), S_OK);
    HWND own = nullptr;
    EXPECT_EQ(in_place->GetWindow(&own), S_OK);
    object->Close(OLECLOSE_NOSAVE);
    EXPECT_FALSE(::IsWindow(own));
    EXPECT_EQ(site.Times("OnInPlaceDeactivate"), 1);
    object->SetClientSite(nullptr);
    EXPECT_EQ(site.References(), 1U);
  });
}

// The site lives only by the control's reference: a control that does not count it would lose it
// during creation.
TEST(Containers, SiteThatLivesByTheControlsReferenceAlone) {
  OnHostThread([](const Module& module) {
    FakeSite site;
    const auto object = module.CreateControl().As<IOleObject>();
    EXPECT_EQ(object->SetClientSite(site.Site()), S_OK);
    site.Release();  // the container's own reference
    EXPECT_EQ(site.References(), 1U);
    EXPECT_EQ(object->SetClientSite(nullptr), S_OK);
    EXPECT_EQ(site.References(), 0U);
    site.AddRef();
  });
}

// Site first, bag only, every plain notification answered by E_NOTIMPL, deactivation with callbacks
// inside, sinks unadvised after the site has gone.
TEST(Containers, PageThatLoadsTheBagAndImplementsLittle) {
  OnHostThread([](const Module& module) {
    const HostWindow window;
    FakeSite site(FakeSite::Offers::kInPlaceSiteEx, window.Get());
    const auto control = module.CreateControl();
    EXPECT_FALSE(control.As<IQuickActivate>());
    EXPECT_FALSE(control.As<IPersistPropertyBag2>());
    const auto object = control.As<IOleObject>();
    DWORD status = 0;
    object->GetMiscStatus(DVASPECT_CONTENT, &status);
    ASSERT_EQ(object->SetClientSite(site.Site()), S_OK);
    FakeBag bag(FakeBag::Missing::kInvalidArgument, FakeBag::Hint::kObeyed);
    bag.entries = {{L"ServerAddress", Variant(L"host")},
                   {L"ServerPort", Variant(L"8081")},
                   {L"UseProxy", Variant(L"-1")}};
    EXPECT_EQ(control.As<IPersistPropertyBag>()->Load(&bag, nullptr), S_OK);
    FakePropertySink sink;
    Com<IConnectionPoint> point;
    ASSERT_EQ(control.As<IConnectionPointContainer>()->FindConnectionPoint(IID_IPropertyNotifySink,
                                                                           point.Out()),
              S_OK);
    DWORD cookie = 0;
    ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);
    VARIANT garbage;
    std::memset(&garbage, 0xCC, sizeof(garbage));
    DISPPARAMS none{};
    EXPECT_EQ(control.As<IDispatch>()->Invoke(DISPID_READYSTATE, IID_NULL, 0, DISPATCH_PROPERTYGET,
                                              &none, &garbage, nullptr, nullptr),
              DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(
        object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site.Site(), 0, window.Get(), nullptr),
        S_OK);
    const auto values = ValuesOf(control.As<ISecurityCtrl>(kSecurityCtrlId));
    EXPECT_EQ(values.server_port, 8081);
    EXPECT_EQ(values.use_proxy, VARIANT_TRUE);
    site.failing_call = "OnInPlaceDeactivateEx";
    const auto in_place = object.As<IOleInPlaceObject>();
    EXPECT_EQ(in_place->UIDeactivate(), S_OK);
    EXPECT_EQ(in_place->InPlaceDeactivate(), S_OK);
    EXPECT_TRUE(site.WasTold("OnInPlaceDeactivate"));
    EXPECT_EQ(object->Close(OLECLOSE_NOSAVE), S_OK);
    EXPECT_EQ(object->SetClientSite(nullptr), S_OK);
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
    EXPECT_EQ(sink.References(), 1U);
  });
}

// Advice and GetMiscStatus before the site, class information called without a check,
// OnPosRectChange answered with the whole client area, the site deleted outright at the end.
TEST(Containers, FrameworkThatDeletesItsSiteOutright) {
  OnHostThread([](const Module& module) {
    const HostWindow window;
    auto site = std::make_unique<FakeSite>(FakeSite::Offers::kInPlaceSiteEx, window.Get());
    const auto control = module.CreateControl();
    Com<ITypeInfo> class_type;
    ASSERT_EQ(control.As<IProvideClassInfo>()->GetClassInfo(class_type.Out()), S_OK);
    FakeEventSink events(kSourceId);
    Com<IConnectionPoint> point;
    ASSERT_EQ(control.As<IConnectionPointContainer>()->FindConnectionPoint(kSourceId, point.Out()),
              S_OK);
    DWORD event_cookie = 0;
    EXPECT_EQ(point->Advise(&events, &event_cookie), S_OK);
    const auto object = control.As<IOleObject>();
    FakeAdviseSink advice;
    DWORD advice_cookie = 0;
    EXPECT_EQ(object->Advise(&advice, &advice_cookie), S_OK);
    object->SetHostNames(L"frame", nullptr);
    EXPECT_EQ(::OleSetContainedObject(control.Get(), TRUE), S_OK);
    EXPECT_EQ(::OleRun(control.Get()), S_OK);
    const auto in_place = control.As<IOleInPlaceObject>();
    EXPECT_EQ(object->SetClientSite(site->Site()), S_OK);
    EXPECT_EQ(control.As<IPersistStreamInit>()->InitNew(), S_OK);
    HWND none = nullptr;
    EXPECT_EQ(in_place->GetWindow(&none), E_FAIL);
    const RECT client{0, 0, 300, 300};
    EXPECT_EQ(in_place->SetObjectRects(&client, &client), S_OK) << "before the first verb";
    site->on_pos_rect_change = [&](const RECT&) { in_place->SetObjectRects(&client, &client); };
    EXPECT_EQ(
        object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site->Site(), 0, window.Get(), &client),
        S_OK);
    EXPECT_EQ(object->DoVerb(OLEIVERB_SHOW, nullptr, site->Site(), 0, window.Get(), &client), S_OK);
    EXPECT_EQ(in_place->SetObjectRects(&client, &client), S_OK);
    in_place->InPlaceDeactivate();
    in_place->UIDeactivate();
    EXPECT_EQ(object->Unadvise(advice_cookie), S_OK);
    EXPECT_EQ(object->DoVerb(OLEIVERB_HIDE, nullptr, site->Site(), 0, window.Get(), nullptr), S_OK);
    EXPECT_EQ(object->Close(OLECLOSE_NOSAVE), S_OK);
    EXPECT_EQ(object->SetClientSite(nullptr), S_OK);
    site.reset();
    EXPECT_EQ(in_place->InPlaceDeactivate(), S_OK) << "and the control asks nothing of it any more";
    EXPECT_EQ(point->Unadvise(event_cookie), S_OK);
  });
}

// Streams whose memory is freed behind the call, a large first extent, the minimum size by
// SetExtent(0, 0), a bag that says "missing" with success, points listed one by one, and no Close
// at the end.
TEST(Containers, ToolkitThatProbesSizesAndNeverCloses) {
  OnHostThread([](const Module& module) {
    const HostWindow window;
    FakeSite site(FakeSite::Offers::kInPlaceSite, window.Get());
    const auto control = module.CreateControl();
    const auto object = control.As<IOleObject>();
    const auto security = control.As<ISecurityCtrl>(kSecurityCtrlId);
    EXPECT_EQ(object->SetClientSite(site.Site()), S_OK);
    {
      FakeStream stream;
      PutValues(security, kOthers);
      EXPECT_EQ(control.As<IPersistStreamInit>()->Save(&stream, TRUE), S_OK);
      FakeStream again(stream.content);
      EXPECT_EQ(control.As<IPersistStreamInit>()->Load(&again), S_OK);
    }
    FakeAdviseSink view_sink;
    EXPECT_EQ(control.As<IViewObject>()->SetAdvise(DVASPECT_CONTENT, 0, &view_sink), S_OK);
    SIZEL size{6615, 6615};
    object->SetExtent(DVASPECT_CONTENT, &size);
    EXPECT_EQ(object->GetExtent(DVASPECT_CONTENT, &size), S_OK);
    EXPECT_EQ(size.cx, 741);
    EXPECT_EQ(object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site.Site(), 0, window.Get(),
                             &site.rectangle),
              S_OK);
    HWND own = nullptr;
    EXPECT_EQ(control.As<IOleWindow>()->GetWindow(&own), S_OK);
    EXPECT_EQ(::SetParent(own, window.Get()), window.Get()) << "a reparenting host";
    const auto ole_control = control.As<IOleControl>();
    for (const DISPID ambient : {DISPID_AMBIENT_BACKCOLOR, DISPID_AMBIENT_FORECOLOR,
                                 DISPID_AMBIENT_FONT, DISPID_AMBIENT_USERMODE}) {
      EXPECT_EQ(ole_control->OnAmbientPropertyChange(ambient), S_OK);
    }
    size = {0, 0};
    object->SetExtent(DVASPECT_CONTENT, &size);
    EXPECT_EQ(object->GetExtent(DVASPECT_CONTENT, &size), S_OK);
    EXPECT_EQ(size.cy, 741);
    FakeBag saved(FakeBag::Missing::kParameterNotFound);
    EXPECT_EQ(control.As<IPersistPropertyBag>()->Save(&saved, FALSE, TRUE), S_OK);
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ(control.As<IPersistPropertyBag>()->Load(&saved, nullptr), S_OK);
    }
    EXPECT_EQ(ValuesOf(security), kOthers);
    control.As<IOleInPlaceObject>()->InPlaceDeactivate();
    EXPECT_TRUE(site.WasTold("OnInPlaceDeactivate"));
    object->SetClientSite(nullptr);
    EXPECT_EQ(view_sink.References(), 1U);
  });
}

// A designer: misc status and property sink before site and initialisation, frozen events that are
// never thawed, extents read back and set again, OnPosRectChange answered at once, values read
// inside the notification.
TEST(Containers, DesignerThatAsksEverythingFirst) {
  OnHostThread([](const Module& module) {
    const HostWindow window;
    FakeSite site(FakeSite::Offers::kInPlaceSite, window.Get());
    const auto control = module.CreateControl();
    const auto object = control.As<IOleObject>();
    const auto security =
        control.As<ISecurityCtrl>(ToGuid(identities::kGenerations.front().interface_id));
    DWORD status = 0;
    EXPECT_EQ(object->GetMiscStatus(DVASPECT_CONTENT, &status), S_OK);
    FakePropertySink sink;
    SHORT seen = 0;
    sink.on_changed = [&] { security->get_ServerPort(&seen); };
    Com<IConnectionPoint> point;
    ASSERT_EQ(control.As<IConnectionPointContainer>()->FindConnectionPoint(IID_IPropertyNotifySink,
                                                                           point.Out()),
              S_OK);
    DWORD cookie = 0;
    ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);
    EXPECT_EQ(object->SetClientSite(site.Site()), S_OK);
    EXPECT_EQ(control.As<IOleControl>()->FreezeEvents(TRUE), S_OK);
    FakeBag bag = SavedForm();
    EXPECT_EQ(control.As<IPersistPropertyBag>()->Load(&bag, nullptr), S_OK);
    EXPECT_TRUE(sink.changed.empty());
    EXPECT_EQ(object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site.Site(), -1, window.Get(),
                             &site.rectangle),
              S_OK);
    EXPECT_TRUE(site.WasTold("ShowObject"));
    EXPECT_FALSE(site.WasTold("OnPosRectChange")) << "or the form opens as changed";
    const auto in_place = object.As<IOleInPlaceObject>();
    site.on_pos_rect_change = [&](const RECT& asked) { in_place->SetObjectRects(&asked, &asked); };
    SIZEL size{1000, 1000};
    EXPECT_EQ(object->SetExtent(DVASPECT_CONTENT, &size), S_OK);
    EXPECT_EQ(object->GetExtent(DVASPECT_CONTENT, &size), S_OK);
    EXPECT_EQ(object->SetExtent(DVASPECT_CONTENT, &size), S_OK);
    EXPECT_FALSE(site.WasTold("OnPosRectChange"));
    EXPECT_EQ(security->put_ServerPort(99), S_OK);
    EXPECT_EQ(seen, 99);
    EXPECT_EQ(control.As<IPersistStreamInit>()->IsDirty(), S_OK);
    FakeBag saved;
    EXPECT_EQ(control.As<IPersistPropertyBag>()->Save(&saved, TRUE, TRUE), S_OK);
    EXPECT_EQ(saved.entries.size(), 2U);
    EXPECT_EQ(control.As<IPersistStreamInit>()->IsDirty(), S_FALSE);
    in_place->InPlaceDeactivate();
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
    object->SetClientSite(nullptr);
  });
}

// The system's own host window, with a message loop. It makes the control by its registered name.
TEST(Containers, SystemsHostWindowShowsTheIconAndLetsGo) {
  const Module module;
  ASSERT_EQ(module.Register(), S_OK);
  OnApartmentThread([] {
    const HMODULE atl = ::LoadLibraryW(L"atl.dll");
    ASSERT_NE(atl, nullptr);
    const auto init = reinterpret_cast<BOOL(STDMETHODCALLTYPE*)()>(
        reinterpret_cast<void*>(::GetProcAddress(atl, "AtlAxWinInit")));
    const auto get_control = reinterpret_cast<HRESULT(STDMETHODCALLTYPE*)(HWND, IUnknown**)>(
        reinterpret_cast<void*>(::GetProcAddress(atl, "AtlAxGetControl")));
    ASSERT_NE(init, nullptr);
    init();
    const HWND host = ::CreateWindowExW(0, L"AtlAxWin", L"QuorvaneSecurity.SecurityCtrl",
                                        WS_POPUP | WS_CLIPCHILDREN, 0, 0, 120, 90, nullptr, nullptr,
                                        ::GetModuleHandleW(nullptr), nullptr);
    ASSERT_NE(host, nullptr);
    ::ShowWindow(host, SW_SHOWNOACTIVATE);
    MSG message;
    for (int i = 0; i < 200 && ::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE); ++i) {
      ::DispatchMessageW(&message);
    }
    {
      Com<IUnknown> control;
      ASSERT_EQ(get_control(host, control.Out()), S_OK);
      const auto security = control.As<ISecurityCtrl>(kSecurityCtrlId);
      ASSERT_TRUE(security);
      EXPECT_EQ(security->put_ServerPort(1234), S_OK);
      HWND own = nullptr;
      EXPECT_EQ(control.As<IOleWindow>()->GetWindow(&own), S_OK);
      EXPECT_TRUE(::IsChild(host, own));
      RECT size{};
      ::GetClientRect(own, &size);
      EXPECT_EQ(size.right, 28);
      EXPECT_EQ(size.bottom, 28);
    }
    ::DestroyWindow(host);
    for (int i = 0; i < 200 && ::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE); ++i) {
      ::DispatchMessageW(&message);
    }
    ::CoFreeUnusedLibraries();
  });
  EXPECT_EQ(module.CanUnloadNow(), S_OK);
  EXPECT_EQ(module.Unregister(), S_OK);
}

}  // namespace
}  // namespace quorvane::component::containers_test
