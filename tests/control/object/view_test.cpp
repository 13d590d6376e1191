// Proves the control as something to look at: it draws its icon anywhere, without a site, and keeps
// one view sink.

#include <set>

#include "tests/support/component/canvas.h"
#include "tests/support/component/fake_sinks.h"
#include "tests/support/component/fake_site.h"
#include "tests/support/component/module_under_test.h"

namespace quorvane::component {
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
    for (const RECT& around :
         {RECT{0, 0, 64, 8}, RECT{0, 36, 64, 64}, RECT{0, 8, 8, 36}, RECT{36, 8, 64, 36}}) {
      EXPECT_EQ(canvas.Colours(around), (std::set<DWORD>{Canvas::kMagenta}));
    }
  });
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
    ::DeleteMetaFile(metafile);
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
    DWORD freeze = 0;
    LOGPALETTE* palette = nullptr;
    EXPECT_EQ(view->GetColorSet(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, &palette),
              E_NOTIMPL);
    EXPECT_EQ(view->Freeze(DVASPECT_CONTENT, -1, nullptr, &freeze), E_NOTIMPL);
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
}  // namespace quorvane::component
