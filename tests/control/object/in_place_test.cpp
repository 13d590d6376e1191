// Proves in-place activation: the order of calls on the site, the window at its locked size, and
// every way back.

#include <functional>
#include <set>
#include <utility>

#include "tests/support/component/canvas.h"
#include "tests/support/component/fake_site.h"
#include "tests/support/component/host_window.h"
#include "tests/support/component/module_under_test.h"

namespace quorvane::component::in_place_test {
namespace {

using Offers = FakeSite::Offers;

template <class Body>
void OnStage(Offers offers, Body body) {
  OnApartmentThread([&] {
    const Module module;
    {
      HostWindow host;
      FakeSite site(offers, host.Get());
      const auto object = module.CreateControl().As<IOleObject>();
      const auto in_place = object.As<IOleInPlaceObject>();
      EXPECT_EQ(object->SetClientSite(site.Site()), S_OK);
      const auto do_verb = [&](LONG verb, const RECT* rectangle) {
        return object->DoVerb(verb, nullptr, site.Site(), 0, host.Get(), rectangle);
      };
      body(host, site, object, in_place, do_verb);
      EXPECT_EQ(object->Close(OLECLOSE_NOSAVE), S_OK);
      EXPECT_EQ(object->SetClientSite(nullptr), S_OK);
      EXPECT_EQ(site.References(), 1U);
    }
    EXPECT_EQ(module.CanUnloadNow(), S_OK);
  });
}

HWND WindowOf(const Com<IOleInPlaceObject>& in_place) {
  HWND window = nullptr;
  return in_place->GetWindow(&window) == S_OK ? window : nullptr;
}

SIZE SizeOf(HWND window) {
  RECT rectangle{};
  ::GetWindowRect(window, &rectangle);
  return {rectangle.right - rectangle.left, rectangle.bottom - rectangle.top};
}

TEST(Activation, GoesThroughTheSiteInOrder) {
  OnStage(Offers::kInPlaceSiteEx, [](auto& host, auto& site, auto&, auto& in_place, auto do_verb) {
    EXPECT_EQ(do_verb(OLEIVERB_INPLACEACTIVATE, &site.rectangle), S_OK);
    EXPECT_EQ(site.log, (std::vector<std::string>{"CanInPlaceActivate", "OnInPlaceActivateEx",
                                                  "GetWindow", "GetWindowContext", "ShowObject"}));
    EXPECT_EQ(site.frame_info_size, sizeof(OLEINPLACEFRAMEINFO));
    EXPECT_TRUE(site.no_redraw_pointer_given);
    const HWND window = WindowOf(in_place);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(::GetParent(window), host.Get());
    EXPECT_EQ(SizeOf(window).cx, 28);
    EXPECT_EQ(SizeOf(window).cy, 28);
    POINT corner{0, 0};
    ::MapWindowPoints(window, host.Get(), &corner, 1);
    EXPECT_EQ(corner.x, 10);
    EXPECT_EQ(corner.y, 20);
  });
}

TEST(Activation, UsesThePlainSiteWhereThereIsNoOther) {
  OnStage(Offers::kInPlaceSite, [](auto&, auto& site, auto&, auto& in_place, auto do_verb) {
    EXPECT_EQ(do_verb(OLEIVERB_SHOW, &site.rectangle), S_OK);
    EXPECT_TRUE(site.WasTold("OnInPlaceActivate"));
    EXPECT_EQ(in_place->InPlaceDeactivate(), S_OK);
    EXPECT_TRUE(site.WasTold("OnInPlaceDeactivate"));
    EXPECT_FALSE(site.WasTold("OnInPlaceDeactivateEx"));
  });
}

TEST(Activation, NeedsAnInPlaceSite) {
  OnStage(Offers::kClientSiteOnly, [](auto&, auto& site, auto&, auto& in_place, auto do_verb) {
    EXPECT_TRUE(FAILED(do_verb(OLEIVERB_INPLACEACTIVATE, &site.rectangle)));
    EXPECT_EQ(WindowOf(in_place), nullptr);
  });
}

TEST(Activation, IsTheSameForEveryShowingVerbAndOnlyOnce) {
  for (const LONG verb : {LONG{OLEIVERB_INPLACEACTIVATE}, LONG{OLEIVERB_SHOW},
                          LONG{OLEIVERB_PRIMARY}, LONG{OLEIVERB_UIACTIVATE}}) {
    OnStage(Offers::kInPlaceSiteEx, [verb](auto&, auto& site, auto&, auto& in_place, auto do_verb) {
      EXPECT_EQ(do_verb(verb, &site.rectangle), S_OK) << verb;
      const HWND window = WindowOf(in_place);
      EXPECT_NE(window, nullptr);
      EXPECT_EQ(do_verb(verb, &site.rectangle), S_OK);
      EXPECT_EQ(WindowOf(in_place), window);
      EXPECT_EQ(site.Times("OnInPlaceActivateEx"), 1);
      EXPECT_FALSE(site.WasTold("OnUIActivate"));
    });
  }
}

TEST(Activation, StopsWhenTheSiteRefuses) {
  OnStage(Offers::kInPlaceSiteEx, [](auto&, auto& site, auto&, auto& in_place, auto do_verb) {
    site.failing_call = "CanInPlaceActivate";
    site.failure = S_FALSE;
    EXPECT_NE(do_verb(OLEIVERB_INPLACEACTIVATE, &site.rectangle), S_OK);
    EXPECT_EQ(WindowOf(in_place), nullptr);
    EXPECT_FALSE(site.WasTold("OnInPlaceActivateEx"));
  });
}

TEST(Activation, LeavesNothingBehindWhicheverCallOfTheSiteFails) {
  for (const char* call : {"CanInPlaceActivate", "OnInPlaceActivateEx", "GetWindow",
                           "GetWindowContext", "ShowObject"}) {
    for (const HRESULT failure : {E_NOTIMPL, E_FAIL}) {
      OnStage(Offers::kInPlaceSiteEx,
              [&](auto&, auto& site, auto& object, auto& in_place, auto do_verb) {
                site.failing_call = call;
                site.failure = failure;
                (void)do_verb(OLEIVERB_INPLACEACTIVATE, &site.rectangle);
                EXPECT_EQ(object->Close(OLECLOSE_NOSAVE), S_OK) << call;
                EXPECT_EQ(WindowOf(in_place), nullptr) << call;
              });
    }
  }
}

TEST(Activation, FallsBackToTheVerbsRectangleWithoutAWindowContext) {
  OnStage(Offers::kInPlaceSiteEx, [](auto& host, auto& site, auto&, auto& in_place, auto do_verb) {
    site.failing_call = "GetWindowContext";
    const RECT rectangle{5, 6, 33, 34};
    EXPECT_EQ(do_verb(OLEIVERB_INPLACEACTIVATE, &rectangle), S_OK);
    ASSERT_NE(WindowOf(in_place), nullptr);
    POINT corner{0, 0};
    ::MapWindowPoints(WindowOf(in_place), host.Get(), &corner, 1);
    EXPECT_EQ(corner.x, 5);
    EXPECT_EQ(corner.y, 6);
    EXPECT_EQ(do_verb(OLEIVERB_HIDE, nullptr), S_OK);
  });
}

TEST(Activation, TakesTheSitesWindowForItsParentAndTheVerbsWithoutOne) {
  for (const bool site_has_none : {false, true}) {
    OnStage(Offers::kInPlaceSiteEx,
            [site_has_none](auto& host, auto& site, auto& object, auto& in_place, auto) {
              const HostWindow other;
              if (site_has_none) site.failing_call = "GetWindow";
              EXPECT_EQ(object->DoVerb(OLEIVERB_SHOW, nullptr, site.Site(), 0, other.Get(),
                                       &site.rectangle),
                        S_OK);
              ASSERT_NE(WindowOf(in_place), nullptr);
              EXPECT_EQ(::GetParent(WindowOf(in_place)), site_has_none ? other.Get() : host.Get());
              EXPECT_EQ(in_place->InPlaceDeactivate(), S_OK);
            });
  }
}

ATOM WINAPI NoClass(const WNDCLASSW*) {
  ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return 0;
}
ATOM WINAPI ClassIsThere(const WNDCLASSW* description) {
  EXPECT_NE(::RegisterClassW(description), 0);
  ::SetLastError(ERROR_CLASS_ALREADY_EXISTS);
  return 0;
}
HWND WINAPI NoWindow(DWORD, LPCWSTR, LPCWSTR, DWORD, int, int, int, int, HWND, HMENU, HINSTANCE,
                     void*) {
  return nullptr;
}

TEST(Activation, FailsWhereTheSystemMakesNoWindow) {
  OnStage(Offers::kInPlaceSiteEx, [](auto&, auto& site, auto&, auto& in_place, auto do_verb) {
    const auto refuse = [&](const char* call, auto* refusal) {
      const testing::ReplacedImport refused(::GetModuleHandleW(QUORVANE_MODULE_FILE), call,
                                            refusal);
      ASSERT_TRUE(refused.Took()) << call;
      site.log.clear();
      EXPECT_EQ(do_verb(OLEIVERB_SHOW, &site.rectangle), OLE_E_NOT_INPLACEACTIVE) << call;
      EXPECT_EQ(WindowOf(in_place), nullptr) << call;
      EXPECT_EQ(site.Times("OnInPlaceDeactivateEx"), 1) << call;
    };
    refuse("RegisterClassW", NoClass);
    refuse("CreateWindowExW", NoWindow);
    EXPECT_EQ(do_verb(OLEIVERB_SHOW, &site.rectangle), S_OK) << "where nothing refuses";
  });
}

TEST(Activation, TakesAClassThatAnotherThreadRegistered) {
  OnStage(Offers::kInPlaceSiteEx, [](auto&, auto& site, auto&, auto&, auto do_verb) {
    const testing::ReplacedImport replaced(::GetModuleHandleW(QUORVANE_MODULE_FILE),
                                           "RegisterClassW", ClassIsThere);
    ASSERT_TRUE(replaced.Took());
    EXPECT_EQ(do_verb(OLEIVERB_SHOW, &site.rectangle), S_OK);
  });
}

TEST(Activation, BearsNullAndEmptyRectangles) {
  OnStage(Offers::kInPlaceSiteEx, [](auto&, auto& site, auto&, auto& in_place, auto do_verb) {
    site.failing_call = "GetWindowContext";
    const RECT empty{};
    EXPECT_EQ(do_verb(OLEIVERB_INPLACEACTIVATE, nullptr), S_OK);
    EXPECT_EQ(in_place->InPlaceDeactivate(), S_OK);
    EXPECT_EQ(do_verb(OLEIVERB_INPLACEACTIVATE, &empty), S_OK);
    EXPECT_EQ(SizeOf(WindowOf(in_place)).cx, 28);
  });
}

TEST(Deactivation, IsToldOnceByTheFormThatActivated) {
  OnStage(Offers::kInPlaceSiteEx, [](auto&, auto& site, auto&, auto& in_place, auto do_verb) {
    EXPECT_EQ(do_verb(OLEIVERB_INPLACEACTIVATE, &site.rectangle), S_OK);
    const HWND window = WindowOf(in_place);
    EXPECT_EQ(in_place->UIDeactivate(), S_OK);
    EXPECT_EQ(WindowOf(in_place), window);
    EXPECT_EQ(in_place->InPlaceDeactivate(), S_OK);
    EXPECT_FALSE(::IsWindow(window));
    EXPECT_EQ(site.Times("OnInPlaceDeactivateEx"), 1);
    EXPECT_EQ(site.Times("OnInPlaceDeactivate"), 0);
    EXPECT_EQ(in_place->InPlaceDeactivate(), S_OK);
    EXPECT_EQ(site.Times("OnInPlaceDeactivateEx"), 1) << "no callback when inactive";
  });
}

TEST(Deactivation, TriesThePlainCallWhenTheOtherIsNotImplemented) {
  OnStage(Offers::kInPlaceSiteEx, [](auto&, auto& site, auto&, auto& in_place, auto do_verb) {
    EXPECT_EQ(do_verb(OLEIVERB_INPLACEACTIVATE, &site.rectangle), S_OK);
    site.failing_call = "OnInPlaceDeactivateEx";
    EXPECT_EQ(in_place->InPlaceDeactivate(), S_OK);
    EXPECT_EQ(site.Times("OnInPlaceDeactivate"), 1);
  });
}

TEST(Deactivation, ComesWithCloseAndWithTheLossOfTheSite) {
  for (const bool by_close : {true, false}) {
    OnStage(Offers::kInPlaceSiteEx, [by_close](auto&, auto& site, auto& object, auto& in_place,
                                               auto do_verb) {
      EXPECT_EQ(do_verb(OLEIVERB_INPLACEACTIVATE, &site.rectangle), S_OK);
      const HWND window = WindowOf(in_place);
      EXPECT_EQ(by_close ? object->Close(OLECLOSE_NOSAVE) : object->SetClientSite(nullptr), S_OK);
      EXPECT_FALSE(::IsWindow(window));
      EXPECT_EQ(site.Times("OnInPlaceDeactivateEx"), 1);
      EXPECT_EQ(WindowOf(in_place), nullptr);
    });
  }
}

TEST(Deactivation, MayCountReferencesWhileTheControlEnds) {
  OnApartmentThread([] {
    const Module module;
    HostWindow host;
    FakeSite site(Offers::kInPlaceSiteEx, host.Get());
    IOleObject* last = nullptr;
    {
      const auto object = module.CreateControl().As<IOleObject>();
      EXPECT_EQ(object->SetClientSite(site.Site()), S_OK);
      EXPECT_EQ(object->DoVerb(OLEIVERB_SHOW, nullptr, nullptr, 0, host.Get(), nullptr), S_OK);
      last = object.Get();
      last->AddRef();
    }
    site.on_call = [&](const std::string& call) {
      if (call != "OnInPlaceDeactivateEx") return;
      last->AddRef();
      EXPECT_NE(last->Release(), 0U) << "it ends once";
    };
    EXPECT_EQ(last->Release(), 0U);
    EXPECT_EQ(site.Times("OnInPlaceDeactivateEx"), 1);
    EXPECT_EQ(site.References(), 1U);
    EXPECT_EQ(module.CanUnloadNow(), S_OK);
  });
}

TEST(Deactivation, ToleratesAWindowThatTheHostDestroyed) {
  OnStage(Offers::kInPlaceSiteEx, [](auto&, auto& site, auto&, auto& in_place, auto do_verb) {
    EXPECT_EQ(do_verb(OLEIVERB_INPLACEACTIVATE, &site.rectangle), S_OK);
    EXPECT_TRUE(::DestroyWindow(WindowOf(in_place)));
    EXPECT_EQ(in_place->InPlaceDeactivate(), S_OK);
    EXPECT_EQ(do_verb(OLEIVERB_INPLACEACTIVATE, &site.rectangle), S_OK) << "and can be shown again";
    EXPECT_NE(WindowOf(in_place), nullptr);
  });
}

TEST(Hide, HidesTheWindowAndIsHarmlessWhenInactive) {
  OnStage(Offers::kInPlaceSiteEx, [](auto&, auto& site, auto&, auto& in_place, auto do_verb) {
    EXPECT_EQ(do_verb(OLEIVERB_HIDE, nullptr), S_OK);
    EXPECT_EQ(do_verb(OLEIVERB_INPLACEACTIVATE, &site.rectangle), S_OK);
    EXPECT_TRUE(::GetWindowLongW(WindowOf(in_place), GWL_STYLE) & WS_VISIBLE);
    EXPECT_EQ(do_verb(OLEIVERB_HIDE, nullptr), S_OK);
    EXPECT_FALSE(::GetWindowLongW(WindowOf(in_place), GWL_STYLE) & WS_VISIBLE);
    EXPECT_EQ(do_verb(OLEIVERB_SHOW, &site.rectangle), S_OK);
    EXPECT_TRUE(::GetWindowLongW(WindowOf(in_place), GWL_STYLE) & WS_VISIBLE);
  });
}

TEST(Verbs, RefuseWhatTheControlDoesNotDo) {
  OnStage(Offers::kInPlaceSiteEx, [](auto&, auto& site, auto&, auto&, auto do_verb) {
    EXPECT_EQ(do_verb(OLEIVERB_OPEN, &site.rectangle), E_NOTIMPL);
    EXPECT_EQ(do_verb(OLEIVERB_PROPERTIES, &site.rectangle), E_NOTIMPL);
    EXPECT_EQ(do_verb(57, &site.rectangle), OLEOBJ_S_INVALIDVERB);
  });
}

// Lets the owner of a window answer the news of its children: WM_CREATE, WM_DESTROY.
class ParentNotices {
 public:
  ParentNotices(HWND parent, std::function<void(UINT)> answer) : parent_(parent) {
    on_notice = std::move(answer);
    below = reinterpret_cast<WNDPROC>(
        ::SetWindowLongW(parent, GWL_WNDPROC, reinterpret_cast<LONG>(OnMessage)));
  }
  ParentNotices(const ParentNotices&) = delete;
  ParentNotices& operator=(const ParentNotices&) = delete;
  ~ParentNotices() { ::SetWindowLongW(parent_, GWL_WNDPROC, reinterpret_cast<LONG>(below)); }

 private:
  static LRESULT CALLBACK OnMessage(HWND handle, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_PARENTNOTIFY) on_notice(LOWORD(first));
    return ::CallWindowProcW(below, handle, message, first, second);
  }
  inline static std::function<void(UINT)> on_notice;
  inline static WNDPROC below = nullptr;
  HWND parent_;
};

int ChildrenOf(HWND parent) {
  int count = 0;
  for (HWND child = ::GetWindow(parent, GW_CHILD); child != nullptr;
       child = ::GetWindow(child, GW_HWNDNEXT)) {
    ++count;
  }
  return count;
}

TEST(ReEntrance, ShowingTheControlAtTheNewsOfItsWindowMakesNoSecondOne) {
  OnStage(Offers::kInPlaceSiteEx, [](auto& host, auto& site, auto&, auto& in_place, auto do_verb) {
    HWND seen = nullptr;
    const ParentNotices notices(host.Get(), [&](UINT news) {
      if (news != WM_CREATE) return;
      EXPECT_EQ(do_verb(OLEIVERB_SHOW, &site.rectangle), S_OK);
      seen = WindowOf(in_place);
    });
    EXPECT_EQ(do_verb(OLEIVERB_SHOW, &site.rectangle), S_OK);
    EXPECT_EQ(ChildrenOf(host.Get()), 1);
    EXPECT_EQ(seen, WindowOf(in_place)) << "known from its first message on";
    EXPECT_EQ(site.Times("OnInPlaceActivateEx"), 1);
    EXPECT_EQ(in_place->InPlaceDeactivate(), S_OK);
    EXPECT_EQ(ChildrenOf(host.Get()), 0);
  });
}

TEST(ReEntrance, DeactivatingAtTheNewsOfTheWindowLeavesNone) {
  OnStage(Offers::kInPlaceSiteEx, [](auto& host, auto& site, auto&, auto& in_place, auto do_verb) {
    const ParentNotices notices(host.Get(), [&](UINT news) {
      if (news == WM_CREATE) {
        EXPECT_EQ(in_place->InPlaceDeactivate(), S_OK);
      }
    });
    EXPECT_EQ(do_verb(OLEIVERB_SHOW, &site.rectangle), OLE_E_NOT_INPLACEACTIVE);
    EXPECT_EQ(WindowOf(in_place), nullptr);
    EXPECT_EQ(ChildrenOf(host.Get()), 0);
    EXPECT_EQ(site.Times("OnInPlaceDeactivateEx"), 1);
    EXPECT_FALSE(site.WasTold("ShowObject"));
  });
}

TEST(ReEntrance, DestroyingTheWindowAtItsNewsIsAFailedActivation) {
  OnStage(Offers::kInPlaceSiteEx, [](auto& host, auto& site, auto&, auto& in_place, auto do_verb) {
    const ParentNotices notices(host.Get(), [&](UINT news) {
      if (news == WM_CREATE) ::DestroyWindow(WindowOf(in_place));
    });
    EXPECT_EQ(do_verb(OLEIVERB_SHOW, &site.rectangle), OLE_E_NOT_INPLACEACTIVE);
    EXPECT_EQ(ChildrenOf(host.Get()), 0);
    EXPECT_EQ(site.Times("OnInPlaceDeactivateEx"), 1) << "the site is left again";
  });
}

TEST(ReEntrance, TheWindowsEndIsNoMomentToShowTheControlAgain) {
  OnStage(Offers::kInPlaceSiteEx, [](auto& host, auto& site, auto&, auto& in_place, auto do_verb) {
    EXPECT_EQ(do_verb(OLEIVERB_SHOW, &site.rectangle), S_OK);
    const ParentNotices notices(host.Get(), [&](UINT news) {
      if (news == WM_DESTROY) {
        EXPECT_EQ(do_verb(OLEIVERB_SHOW, &site.rectangle), OLE_E_NOT_INPLACEACTIVE);
      }
    });
    EXPECT_EQ(in_place->InPlaceDeactivate(), S_OK);
    EXPECT_EQ(WindowOf(in_place), nullptr);
    EXPECT_EQ(site.Times("OnInPlaceActivateEx"), 1);
    EXPECT_EQ(site.Times("OnInPlaceDeactivateEx"), 1);
  });
}

TEST(ReEntrance, AnyCallOfTheSiteMayShowTheControlOnce) {
  for (const char* call :
       {"CanInPlaceActivate", "OnInPlaceActivateEx", "GetWindow", "GetWindowContext"}) {
    OnStage(Offers::kInPlaceSiteEx,
            [&](auto& host, auto& site, auto&, auto& in_place, auto do_verb) {
              site.on_call = [&](const std::string& now) {
                if (now != call) return;
                site.on_call = nullptr;
                EXPECT_EQ(do_verb(OLEIVERB_SHOW, &site.rectangle), S_OK) << call;
              };
              EXPECT_EQ(do_verb(OLEIVERB_SHOW, &site.rectangle), S_OK) << call;
              EXPECT_EQ(ChildrenOf(host.Get()), 1) << call;
              EXPECT_EQ(site.Times("OnInPlaceActivateEx"), 1) << call;
              EXPECT_EQ(in_place->InPlaceDeactivate(), S_OK);
              EXPECT_EQ(ChildrenOf(host.Get()), 0) << call;
              EXPECT_EQ(site.Times("OnInPlaceDeactivateEx"), 1) << call;
            });
  }
}

TEST(ReEntrance, AnyCallOfTheSiteMayDeactivateTheControl) {
  for (const char* call : {"OnInPlaceActivateEx", "GetWindow", "GetWindowContext"}) {
    OnStage(Offers::kInPlaceSiteEx,
            [&](auto& host, auto& site, auto&, auto& in_place, auto do_verb) {
              site.on_call = [&](const std::string& now) {
                if (now == call) {
                  EXPECT_EQ(in_place->InPlaceDeactivate(), S_OK) << call;
                }
              };
              EXPECT_EQ(do_verb(OLEIVERB_SHOW, &site.rectangle), OLE_E_NOT_INPLACEACTIVE) << call;
              EXPECT_EQ(ChildrenOf(host.Get()), 0) << call;
              EXPECT_EQ(site.Times("OnInPlaceDeactivateEx"), 1) << call;
            });
  }
}

TEST(ReEntrance, ASiteThatRefusesAfterItShowedTheControlKeepsNoWindow) {
  OnStage(Offers::kInPlaceSiteEx, [](auto& host, auto& site, auto&, auto&, auto do_verb) {
    site.failing_call = "OnInPlaceActivateEx";
    site.on_call = [&](const std::string& now) {
      if (now == "OnInPlaceActivateEx") {
        EXPECT_EQ(do_verb(OLEIVERB_SHOW, nullptr), S_OK);
      }
    };
    EXPECT_EQ(do_verb(OLEIVERB_SHOW, nullptr), OLE_E_NOT_INPLACEACTIVE);
    EXPECT_EQ(ChildrenOf(host.Get()), 0);
    EXPECT_FALSE(site.WasTold("OnInPlaceDeactivateEx")) << "it was never entered";
  });
}

// A host that gives back its last reference in each of the calls that it gets.
TEST(ReEntrance, TheLastReferenceMayGoInAnyCallback) {
  for (const char* call : {"CanInPlaceActivate", "OnInPlaceActivateEx", "GetWindow",
                           "GetWindowContext", "ShowObject", "WM_PARENTNOTIFY"}) {
    OnApartmentThread([&] {
      const Module module;
      HostWindow host;
      FakeSite site(Offers::kInPlaceSiteEx, host.Get());
      IOleObject* object = nullptr;
      EXPECT_EQ(
          module.CreateControl()->QueryInterface(IID_IOleObject, reinterpret_cast<void**>(&object)),
          S_OK);
      EXPECT_EQ(object->SetClientSite(site.Site()), S_OK);
      bool is_released = false;
      const auto release = [&](const std::string& now) {
        if (now == call && !std::exchange(is_released, true)) object->Release();
      };
      site.on_call = release;
      {
        const ParentNotices notices(host.Get(), [&](UINT) { release("WM_PARENTNOTIFY"); });
        (void)object->DoVerb(OLEIVERB_SHOW, nullptr, nullptr, 0, host.Get(), nullptr);
      }
      EXPECT_TRUE(is_released) << call;
      EXPECT_EQ(ChildrenOf(host.Get()), 0) << call;
      EXPECT_EQ(site.References(), 1U) << call;
      EXPECT_EQ(module.CanUnloadNow(), S_OK) << call;
    });
  }
}

// A window ends on the thread that made it only, so it may outlive a control whose last reference
// goes on another one; its procedure is the module's.
TEST(Window, KeepsTheModuleInMemoryWhileItLives) {
  OnApartmentThread([] {
    const Module module;
    HostWindow host;
    FakeSite site(Offers::kInPlaceSiteEx, host.Get());
    IOleObject* object = nullptr;
    EXPECT_EQ(
        module.CreateControl()->QueryInterface(IID_IOleObject, reinterpret_cast<void**>(&object)),
        S_OK);
    EXPECT_EQ(object->SetClientSite(site.Site()), S_OK);
    EXPECT_EQ(object->DoVerb(OLEIVERB_SHOW, nullptr, nullptr, 0, host.Get(), nullptr), S_OK);
    std::thread([object] { EXPECT_EQ(object->Release(), 0U); }).join();
    EXPECT_EQ(site.References(), 1U) << "the control has ended";
    EXPECT_EQ(ChildrenOf(host.Get()), 1);
    EXPECT_EQ(module.CanUnloadNow(), S_FALSE);
    EXPECT_TRUE(::DestroyWindow(::GetWindow(host.Get(), GW_CHILD)));
    EXPECT_EQ(module.CanUnloadNow(), S_OK);
  });
}

// A class that stayed would lead the windows of the next load into the code of this one.
TEST(Window, TakesItsClassAlongWithTheModule) {
  OnApartmentThread([] {
    const TemporaryFolder folder;
    const std::wstring copy = folder.File(L"class.ocx");
    ASSERT_TRUE(::CopyFileW(QUORVANE_MODULE_FILE, copy.c_str(), TRUE));
    const wchar_t* const name = L"QuorvaneSecurity.SecurityCtrl";
    HINSTANCE instance = nullptr;
    WNDCLASSW description{};
    {
      const Module module(copy);
      instance = module.Handle();
      HostWindow host;
      FakeSite site(Offers::kInPlaceSiteEx, host.Get());
      const auto object = module.CreateControl().As<IOleObject>();
      EXPECT_EQ(object->SetClientSite(site.Site()), S_OK);
      EXPECT_EQ(object->DoVerb(OLEIVERB_SHOW, nullptr, nullptr, 0, host.Get(), nullptr), S_OK);
      EXPECT_TRUE(::GetClassInfoW(instance, name, &description));
      EXPECT_EQ(description.hCursor, ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512))) << "arrow";
      EXPECT_EQ(object->SetClientSite(nullptr), S_OK);
    }
    EXPECT_FALSE(IsInMemory(copy));
    EXPECT_FALSE(::GetClassInfoW(instance, name, &description));
  });
}

HDC painted_on = nullptr;
HDC WINAPI PaintThere(HWND window, PAINTSTRUCT* paint) {
  return painted_on == nullptr || ::BeginPaint(window, paint) == nullptr ? nullptr : painted_on;
}

int endings = 0;

BOOL WINAPI EndAndCount(HWND window, const PAINTSTRUCT* paint) {
  ++endings;
  return ::EndPaint(window, paint);
}

TEST(Window, ShowsThePictureWhereItIsAsked) {
  OnStage(Offers::kInPlaceSiteEx, [](auto&, auto&, auto&, auto& in_place, auto do_verb) {
    EXPECT_EQ(do_verb(OLEIVERB_SHOW, nullptr), S_OK);
    const HWND window = WindowOf(in_place);
    const testing::ReplacedImport counted(::GetModuleHandleW(QUORVANE_MODULE_FILE), "EndPaint",
                                          EndAndCount);
    const testing::ReplacedImport led_elsewhere(::GetModuleHandleW(QUORVANE_MODULE_FILE),
                                                "BeginPaint", PaintThere);
    ASSERT_TRUE(counted.Took() && led_elsewhere.Took());
    endings = 0;
    painted_on = nullptr;
    EXPECT_EQ(::SendMessageW(window, WM_PAINT, 0, 0), 0);
    EXPECT_EQ(endings, 0) << "nothing was begun";
    const Canvas paper;
    painted_on = paper.Device();
    EXPECT_EQ(::SendMessageW(window, WM_PAINT, 0, 0), 0);
    EXPECT_EQ(endings, 1);
    EXPECT_GT(paper.Colours({0, 0, 28, 28}).size(), 2U);
    EXPECT_EQ(paper.Colours({28, 0, 64, 64}), (std::set<DWORD>{Canvas::kMagenta}));
    const Canvas canvas;
    const auto device = reinterpret_cast<WPARAM>(canvas.Device());
    EXPECT_EQ(::SendMessageW(window, WM_ERASEBKGND, device, 0), 1) << "the picture fills it";
    EXPECT_EQ(canvas.Colours({0, 0, 64, 64}), (std::set<DWORD>{Canvas::kMagenta}));
    EXPECT_EQ(::SendMessageW(window, WM_PRINTCLIENT, device, PRF_CLIENT), 0);
    EXPECT_GT(canvas.Colours({0, 0, 28, 28}).size(), 2U);
    EXPECT_EQ(canvas.Colours({28, 0, 64, 64}), (std::set<DWORD>{Canvas::kMagenta}));
  });
}

TEST(SetObjectRects, MayFindItsWindowDestroyedAtTheFirstMessage) {
  OnStage(Offers::kInPlaceSiteEx, [](auto& host, auto& site, auto&, auto& in_place, auto do_verb) {
    EXPECT_EQ(do_verb(OLEIVERB_SHOW, &site.rectangle), S_OK);
    site.on_pos_rect_change = [&](const RECT&) { EXPECT_EQ(in_place->InPlaceDeactivate(), S_OK); };
    const RECT wide{50, 60, 250, 260};
    EXPECT_EQ(in_place->SetObjectRects(&wide, nullptr), S_OK);
    EXPECT_EQ(ChildrenOf(host.Get()), 0);
    EXPECT_EQ(do_verb(OLEIVERB_SHOW, &site.rectangle), S_OK) << "and can be shown again";
    site.on_pos_rect_change = nullptr;
  });
}

TEST(SetObjectRects, KeepsTheLockedSizeAndTellsTheSiteOnce) {
  OnStage(Offers::kInPlaceSiteEx, [](auto& host, auto& site, auto&, auto& in_place, auto do_verb) {
    EXPECT_EQ(do_verb(OLEIVERB_INPLACEACTIVATE, &site.rectangle), S_OK);
    const RECT wide{50, 60, 250, 260};
    const RECT clip{0, 0, 300, 300};
    EXPECT_EQ(in_place->SetObjectRects(&wide, &clip), S_OK);
    EXPECT_EQ(SizeOf(WindowOf(in_place)).cx, 28);
    EXPECT_EQ(SizeOf(WindowOf(in_place)).cy, 28);
    POINT corner{0, 0};
    ::MapWindowPoints(WindowOf(in_place), host.Get(), &corner, 1);
    EXPECT_EQ(corner.x, 50);
    EXPECT_EQ(corner.y, 60);
    ASSERT_EQ(site.asked_rectangles.size(), 1U);
    EXPECT_EQ(site.asked_rectangles[0].right - site.asked_rectangles[0].left, 28);
    const RECT right_size{70, 80, 98, 108};
    EXPECT_EQ(in_place->SetObjectRects(&right_size, nullptr), S_OK) << "no clip rectangle";
    EXPECT_EQ(site.asked_rectangles.size(), 1U) << "nothing to ask for at the right size";
  });
}

TEST(SetObjectRects, ShowsThePartWithinTheClipOnly) {
  OnStage(Offers::kInPlaceSiteEx, [](auto&, auto& site, auto&, auto& in_place, auto do_verb) {
    EXPECT_EQ(do_verb(OLEIVERB_SHOW, &site.rectangle), S_OK);
    const RECT where{10, 20, 38, 48};
    RECT shown{};
    const RECT part{15, 26, 30, 41};
    EXPECT_EQ(in_place->SetObjectRects(&where, &part), S_OK);
    EXPECT_EQ(::GetWindowRgnBox(WindowOf(in_place), &shown), SIMPLEREGION);
    const RECT expected{5, 6, 20, 21};
    EXPECT_TRUE(::EqualRect(&shown, &expected))
        << shown.left << ' ' << shown.top << ' ' << shown.right << ' ' << shown.bottom;
    const RECT elsewhere{100, 100, 200, 200};
    EXPECT_EQ(in_place->SetObjectRects(&where, &elsewhere), S_OK);
    EXPECT_EQ(::GetWindowRgnBox(WindowOf(in_place), &shown), NULLREGION);
    const RECT around{0, 0, 300, 300};
    EXPECT_EQ(in_place->SetObjectRects(&where, &around), S_OK);
    EXPECT_EQ(::GetWindowRgnBox(WindowOf(in_place), &shown), ERROR) << "all of it";
  });
}

int WINAPI NoRegion(HWND, HRGN, BOOL) { return 0; }

int regions_deleted = 0;
BOOL WINAPI DeleteAndCount(HGDIOBJ object) {
  ++regions_deleted;
  return ::DeleteObject(object);
}

TEST(SetObjectRects, GivesBackARegionOnlyWhenTheWindowDoesNotTakeIt) {
  OnStage(Offers::kInPlaceSiteEx, [](auto&, auto& site, auto&, auto& in_place, auto do_verb) {
    EXPECT_EQ(do_verb(OLEIVERB_SHOW, &site.rectangle), S_OK);
    const HMODULE module = ::GetModuleHandleW(QUORVANE_MODULE_FILE);
    const testing::ReplacedImport counted(module, "DeleteObject", DeleteAndCount);
    const RECT where{10, 20, 38, 48};
    const RECT part{15, 26, 30, 41};
    regions_deleted = 0;
    EXPECT_EQ(in_place->SetObjectRects(&where, &part), S_OK);
    EXPECT_EQ(regions_deleted, 0) << "the window's own";
    const testing::ReplacedImport refused(module, "SetWindowRgn", NoRegion);
    ASSERT_TRUE(counted.Took() && refused.Took());
    EXPECT_EQ(in_place->SetObjectRects(&where, &part), S_OK);
    EXPECT_EQ(regions_deleted, 1);
    EXPECT_EQ(in_place->SetObjectRects(&where, nullptr), S_OK);
    EXPECT_EQ(regions_deleted, 1) << "there was none";
  });
}

TEST(SetObjectRects, EndsThoughTheSiteInsistsOnAnotherSize) {
  OnStage(Offers::kInPlaceSiteEx, [](auto&, auto& site, auto&, auto& in_place, auto do_verb) {
    EXPECT_EQ(do_verb(OLEIVERB_INPLACEACTIVATE, &site.rectangle), S_OK);
    const RECT whole{0, 0, 200, 200};
    site.on_pos_rect_change = [&](const RECT&) {
      EXPECT_EQ(in_place->SetObjectRects(&whole, &whole), S_OK);
    };
    EXPECT_EQ(in_place->SetObjectRects(&whole, &whole), S_OK);
    EXPECT_EQ(site.Times("OnPosRectChange"), 1);
    EXPECT_EQ(SizeOf(WindowOf(in_place)).cx, 28);
  });
}

TEST(SetObjectRects, SucceedsInEveryState) {
  OnStage(Offers::kInPlaceSiteEx, [](auto&, auto& site, auto& object, auto& in_place, auto) {
    const RECT somewhere{1, 2, 29, 30};
    EXPECT_EQ(in_place->SetObjectRects(&somewhere, &somewhere), S_OK) << "before activation";
    EXPECT_EQ(object->SetClientSite(nullptr), S_OK);
    EXPECT_EQ(in_place->SetObjectRects(&somewhere, &somewhere), S_OK) << "without a site";
    EXPECT_TRUE(site.log.empty());
    EXPECT_EQ(in_place->SetObjectRects(nullptr, nullptr), E_POINTER);
  });
}

TEST(InPlaceObject, HasNoWindowWhileInactive) {
  OnStage(Offers::kInPlaceSiteEx, [](auto&, auto&, auto&, auto& in_place, auto) {
    HWND window = reinterpret_cast<HWND>(0x1234);
    EXPECT_EQ(in_place->GetWindow(&window), E_FAIL);
    EXPECT_EQ(window, nullptr);
    EXPECT_EQ(in_place->GetWindow(nullptr), E_POINTER);
    EXPECT_EQ(in_place->InPlaceDeactivate(), S_OK);
    EXPECT_EQ(in_place->UIDeactivate(), S_OK);
    EXPECT_EQ(in_place->ReactivateAndUndo(), INPLACE_E_NOTUNDOABLE);
    EXPECT_EQ(in_place->ContextSensitiveHelp(TRUE), E_NOTIMPL);
  });
}

TEST(InPlaceActiveObject, OnlyAnswers) {
  OnStage(Offers::kInPlaceSiteEx, [](auto&, auto&, auto& object, auto&, auto) {
    const auto active = object.template As<IOleInPlaceActiveObject>();
    MSG message{};
    EXPECT_EQ(active->TranslateAccelerator(&message), S_FALSE);
    EXPECT_EQ(active->OnFrameWindowActivate(TRUE), S_OK);
    EXPECT_EQ(active->OnDocWindowActivate(TRUE), S_OK);
    EXPECT_EQ(active->ResizeBorder(nullptr, nullptr, TRUE), S_OK);
    EXPECT_EQ(active->EnableModeless(TRUE), S_OK);
  });
}

}  // namespace
}  // namespace quorvane::component::in_place_test
