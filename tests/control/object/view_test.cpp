// Proves the control as something to look at: it draws its icon anywhere, without a site, and keeps
// one view sink.

#include <set>
#include <utility>
#include <vector>

#include "tests/support/component/canvas.h"
#include "tests/support/component/fake_sinks.h"
#include "tests/support/component/fake_site.h"
#include "tests/support/component/module_under_test.h"

namespace quorvane::component::view_test {
namespace {

template <class Body>
void WithView(Body body) {
  OnApartmentThread([&body] {
    const Module module;
    {
      const auto control = module.CreateControl();
      const auto view = control.As<IViewObject2>();
      body(control, view);
    }
    EXPECT_EQ(module.CanUnloadNow(), S_OK);
  });
}

TEST(View, DrawsItsIconWithoutSiteInsideTheBoundsOnly) {
  WithView([](auto&, auto& view) {
    const Canvas canvas;
    const RECTL bounds{8, 8, 36, 36};
    EXPECT_EQ(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, canvas.Device(), &bounds,
                         nullptr, nullptr, 0),
              S_OK);
    EXPECT_GT(canvas.Colours({8, 8, 36, 36}).size(), 2U) << "a picture in several colours";
    EXPECT_FALSE(canvas.Colours({8, 8, 36, 36}).contains(Canvas::kMagenta)) << "on a ground";
    for (const RECT& around :
         {RECT{0, 0, 64, 8}, RECT{0, 36, 64, 64}, RECT{0, 8, 8, 36}, RECT{36, 8, 64, 36}}) {
      EXPECT_EQ(canvas.Colours(around), (std::set<DWORD>{Canvas::kMagenta}));
    }
  });
}

TEST(View, DrawsUprightAndLeavesTheAxesAsTheyAre) {
  WithView([](auto&, auto& view) {
    const Canvas plain;
    const Canvas turned;
    const HDC device = turned.Device();
    ::SetMapMode(device, MM_ANISOTROPIC);
    ::SetWindowOrgEx(device, 3, 5, nullptr);
    ::SetWindowExtEx(device, 64, 64, nullptr);
    ::SetViewportOrgEx(device, 0, 64, nullptr);
    ::SetViewportExtEx(device, 64, -64, nullptr);
    const RECTL bounds{8, 8, 36, 36};
    const RECTL same_bounds{8 + 3, 64 - 8 + 5, 36 + 3, 64 - 36 + 5};
    EXPECT_EQ(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, plain.Device(), &bounds,
                         nullptr, nullptr, 0),
              S_OK);
    EXPECT_EQ(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, device, &same_bounds,
                         nullptr, nullptr, 0),
              S_OK);
    for (LONG y = 0; y < Canvas::kSize; ++y) {
      for (LONG x = 0; x < Canvas::kSize; ++x) {
        const RECT pixel{x, y, x + 1, y + 1};
        ASSERT_EQ(turned.Colours(pixel), plain.Colours(pixel)) << x << ", " << y;
      }
    }
    POINT origin{};
    EXPECT_EQ(::GetMapMode(device), MM_ANISOTROPIC);
    ::GetWindowOrgEx(device, &origin);
    EXPECT_EQ(origin.y, 5);
    ::GetViewportOrgEx(device, &origin);
    EXPECT_EQ(origin.y, 64);
  });
}

// The place of a new drawing object and of a new icon, as HandlePlace() has it of other handles.
std::pair<ULONG_PTR, ULONG_PTR> DrawingPlaces() {
  const HBRUSH brush = ::CreateSolidBrush(0);
  const HMENU menu = ::CreateMenu();
  const std::pair places(reinterpret_cast<ULONG_PTR>(brush) & 0xFFFF,
                         reinterpret_cast<ULONG_PTR>(menu) & 0xFFFF);
  ::DeleteObject(brush);
  ::DestroyMenu(menu);
  return places;
}

TEST(View, GivesBackWhatItDrawsWith) {
  WithView([](auto& control, auto& view) {
    const auto data = control.template As<IDataObject>();
    const Canvas canvas;
    const RECTL bounds{0, 0, 28, 28};
    const auto draw = [&](int times) {
      for (int i = 0; i < times; ++i) {
        const HDC recorder = ::CreateMetaFileW(nullptr);
        for (const HDC device : {canvas.Device(), recorder}) {
          EXPECT_EQ(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, device, &bounds,
                               nullptr, nullptr, 0),
                    S_OK);
        }
        ::DeleteMetaFile(::CloseMetaFile(recorder));
        FORMATETC picture{CF_METAFILEPICT, nullptr, DVASPECT_CONTENT, -1, TYMED_MFPICT};
        STGMEDIUM medium{};
        EXPECT_EQ(data->GetData(&picture, &medium), S_OK);
        ::ReleaseStgMedium(&medium);
      }
    };
    draw(10);
    std::vector<HBRUSH> taken(4096);  // the places that are free among those in use
    for (HBRUSH& brush : taken) brush = ::CreateSolidBrush(0);
    const auto before = DrawingPlaces();
    draw(100);
    const auto behind = DrawingPlaces();
    for (const HBRUSH brush : taken) ::DeleteObject(brush);
    EXPECT_LT(behind.first, before.first + 50) << "less than one at every second time";
    EXPECT_LT(behind.second, before.second + 50);
  });
}

HBITMAP made = nullptr;
HBITMAP WINAPI MakeAndNote(HDC device, int width, int height) {
  return made = ::CreateCompatibleBitmap(device, width, height);
}

// The system gives back no bitmap that a device draws with, and lets no second device draw with it.
BOOL WINAPI GiveBackUnselected(HGDIOBJ object) {
  const HDC device = ::CreateCompatibleDC(nullptr);
  const HGDIOBJ old = ::SelectObject(device, object);
  EXPECT_NE(old, nullptr) << "it is selected still";
  if (old != nullptr) ::SelectObject(device, old);
  ::DeleteDC(device);
  return ::DeleteObject(object);
}

TEST(View, GivesBackTheBitmapThatAMetafileIsDrawnThrough) {
  WithView([](auto&, auto& view) {
    const HMODULE module = ::GetModuleHandleW(QUORVANE_MODULE_FILE);
    const testing::ReplacedImport noted(module, "CreateCompatibleBitmap", MakeAndNote);
    const testing::ReplacedImport checked(module, "DeleteObject", GiveBackUnselected);
    ASSERT_TRUE(noted.Took() && checked.Took());
    const HDC recorder = ::CreateMetaFileW(nullptr);
    const RECTL bounds{0, 0, 28, 28};
    made = nullptr;
    EXPECT_EQ(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, recorder, &bounds,
                         nullptr, nullptr, 0),
              S_OK);
    ::DeleteMetaFile(::CloseMetaFile(recorder));
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(::GetObjectType(made), 0U) << "there is no such object any more";
  });
}

// As a pixel holds it: red highest.
DWORD ColourOfDialogs() {
  const COLORREF colour = ::GetSysColor(COLOR_BTNFACE);
  return static_cast<DWORD>(GetRValue(colour)) << 16 | static_cast<DWORD>(GetGValue(colour)) << 8 |
         GetBValue(colour);
}

TEST(View, TakesClipBoundsThoughTheTargetIsNoMetafile) {
  WithView([](auto&, auto& view) {
    const Canvas canvas;
    const RECTL bounds{0, 0, 28, 28};
    const RECTL clip{0, 0, 64, 64};
    EXPECT_EQ(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, canvas.Device(), &bounds,
                         &clip, nullptr, 0),
              S_OK);
  });
}

TEST(View, DrawsIntoAMetafileWhatItDrawsAnywhere) {
  WithView([](auto&, auto& view) {
    const HDC recorder = ::CreateMetaFileW(nullptr);
    ::SetMapMode(recorder, MM_ANISOTROPIC);
    ::SetWindowExtEx(recorder, 741, 741, nullptr);
    const RECTL bounds{0, 0, 741, 741};
    EXPECT_EQ(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, recorder, &bounds,
                         &bounds, nullptr, 0),
              S_OK);
    const HMETAFILE metafile = ::CloseMetaFile(recorder);
    const Canvas canvas;
    ::SetMapMode(canvas.Device(), MM_ANISOTROPIC);
    ::SetViewportExtEx(canvas.Device(), 28, 28, nullptr);
    EXPECT_TRUE(::PlayMetaFile(canvas.Device(), metafile));
    EXPECT_GT(canvas.Colours({0, 0, 28, 28}).size(), 2U);
    EXPECT_EQ(canvas.Colours({28, 0, 64, 64}), (std::set<DWORD>{Canvas::kMagenta}));
    const Canvas plain;
    const RECTL pixels{0, 0, 28, 28};
    EXPECT_EQ(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, plain.Device(), &pixels,
                         nullptr, nullptr, 0),
              S_OK);
    for (LONG y = 0; y < 28; ++y) {
      for (LONG x = 0; x < 28; ++x) {
        const RECT pixel{x, y, x + 1, y + 1};
        ASSERT_EQ(canvas.Colours(pixel), plain.Colours(pixel)) << x << ", " << y;
      }
    }
    ::DeleteMetaFile(metafile);
  });
}

HANDLE WINAPI NoImage(HINSTANCE, LPCWSTR, UINT, int, int, UINT) { return nullptr; }
int icons_destroyed = 0;
BOOL WINAPI DestroyAndCount(HICON icon) {
  ++icons_destroyed;
  return ::DestroyIcon(icon);
}

TEST(View, LeavesOutAnIconThatCannotBeLoaded) {
  WithView([](auto&, auto& view) {
    const HMODULE module = ::GetModuleHandleW(QUORVANE_MODULE_FILE);
    const testing::ReplacedImport refused(module, "LoadImageW", NoImage);
    const testing::ReplacedImport counted(module, "DestroyIcon", DestroyAndCount);
    ASSERT_TRUE(refused.Took() && counted.Took());
    icons_destroyed = 0;
    const Canvas canvas;
    const RECTL bounds{8, 8, 36, 36};
    EXPECT_EQ(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, canvas.Device(), &bounds,
                         nullptr, nullptr, 0),
              S_OK);
    EXPECT_EQ(canvas.Colours({8, 8, 36, 36}), (std::set<DWORD>{ColourOfDialogs()}));
    EXPECT_EQ(icons_destroyed, 0);
  });
}

TEST(View, RefusesOtherAspectsAndNullBounds) {
  WithView([](auto&, auto& view) {
    const Canvas canvas;
    const RECTL bounds{0, 0, 28, 28};
    EXPECT_EQ(view->Draw(DVASPECT_ICON, -1, nullptr, nullptr, nullptr, canvas.Device(), &bounds,
                         nullptr, nullptr, 0),
              DV_E_DVASPECT);
    EXPECT_TRUE(FAILED(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, canvas.Device(),
                                  nullptr, nullptr, nullptr, 0)));
    EXPECT_EQ(view->GetExtent(DVASPECT_ICON, -1, nullptr, nullptr), E_POINTER);
  });
}

TEST(View, LeavesOptionalCallsUnimplemented) {
  WithView([](auto&, auto& view) {
    DWORD freeze = 1;
    auto* palette = reinterpret_cast<LOGPALETTE*>(0x1234);
    EXPECT_EQ(view->GetColorSet(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, &palette),
              E_NOTIMPL);
    EXPECT_EQ(view->Freeze(DVASPECT_CONTENT, -1, nullptr, &freeze), E_NOTIMPL);
    EXPECT_EQ(palette, nullptr);
    EXPECT_EQ(freeze, 0U);
    EXPECT_EQ(view->GetColorSet(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, nullptr),
              E_NOTIMPL);
    EXPECT_EQ(view->Freeze(DVASPECT_CONTENT, -1, nullptr, nullptr), E_NOTIMPL);
    EXPECT_EQ(view->Unfreeze(0), E_NOTIMPL);
  });
}

TEST(View, KeepsOneCountedSink) {
  WithView([](auto&, auto& view) {
    FakeAdviseSink first;
    FakeAdviseSink second;
    EXPECT_EQ(view->SetAdvise(DVASPECT_CONTENT, 0, &first), S_OK);
    EXPECT_EQ(first.References(), 2U);
    EXPECT_EQ(view->SetAdvise(DVASPECT_CONTENT, ADVF_PRIMEFIRST, &second), S_OK);
    EXPECT_EQ(first.References(), 1U);
    {
      DWORD aspects = 0;
      DWORD flags = 0;
      Com<IAdviseSink> got;
      EXPECT_EQ(view->GetAdvise(&aspects, &flags, got.Out()), S_OK);
      EXPECT_EQ(aspects, static_cast<DWORD>(DVASPECT_CONTENT));
      EXPECT_EQ(flags, static_cast<DWORD>(ADVF_PRIMEFIRST));
      EXPECT_EQ(got.Get(), &second);
    }
    EXPECT_EQ(view->GetAdvise(nullptr, nullptr, nullptr), S_OK) << "each out pointer may be null";
    EXPECT_EQ(view->SetAdvise(DVASPECT_CONTENT, 0, nullptr), S_OK);
    EXPECT_EQ(second.References(), 1U);
  });
}

TEST(View, TellsASinkAtOnceWhereItAsksForThat) {
  WithView([](auto&, auto& view) {
    FakeAdviseSink sink;
    const auto is_kept = [&] {
      Com<IAdviseSink> got;
      EXPECT_EQ(view->GetAdvise(nullptr, nullptr, got.Out()), S_OK);
      return got.Get() == &sink;
    };
    EXPECT_EQ(view->SetAdvise(DVASPECT_CONTENT, ADVF_ONLYONCE, &sink), S_OK);
    EXPECT_EQ(sink.views, 0);
    EXPECT_TRUE(is_kept());
    EXPECT_EQ(view->SetAdvise(DVASPECT_CONTENT, ADVF_PRIMEFIRST, &sink), S_OK);
    EXPECT_EQ(sink.views, 1);
    EXPECT_TRUE(is_kept());
    EXPECT_EQ(view->SetAdvise(DVASPECT_CONTENT, ADVF_PRIMEFIRST | ADVF_ONLYONCE, &sink), S_OK);
    EXPECT_EQ(sink.views, 2);
    EXPECT_FALSE(is_kept());
    EXPECT_EQ(view->SetAdvise(DVASPECT_ICON, ADVF_PRIMEFIRST, &sink), DV_E_DVASPECT);
    EXPECT_EQ(view->SetAdvise(DVASPECT_ICON, ADVF_PRIMEFIRST, nullptr), S_OK);
    EXPECT_EQ(sink.views, 2);
    EXPECT_FALSE(is_kept());
    DWORD aspects = 7;
    DWORD flags = 7;
    EXPECT_EQ(view->GetAdvise(&aspects, &flags, nullptr), S_OK);
    EXPECT_EQ(aspects, 0U);
    EXPECT_EQ(flags, 0U);
    EXPECT_EQ(sink.References(), 1U);
  });
}

TEST(View, DropsItsSinkWithTheSite) {
  WithView([](auto& control, auto& view) {
    FakeAdviseSink sink;
    FakeSite site;
    const auto object = control.template As<IOleObject>();
    EXPECT_EQ(object->SetClientSite(site.Site()), S_OK);
    EXPECT_EQ(view->SetAdvise(DVASPECT_CONTENT, 0, &sink), S_OK);
    EXPECT_EQ(object->SetClientSite(nullptr), S_OK);
    EXPECT_EQ(sink.References(), 1U) << "nothing of the container outlives that call";
  });
}

}  // namespace
}  // namespace quorvane::component::view_test
