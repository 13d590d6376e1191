// Proves the control as something to look at: it draws its icon anywhere, without a site, and keeps
// one view sink.

#include <set>

#include "tests/support/component/fake_sinks.h"
#include "tests/support/component/fake_site.h"
#include "tests/support/component/module_under_test.h"

namespace quorvane::component {
namespace {

// A picture in memory to draw on, all magenta at first.
class Canvas {
 public:
  Canvas() {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = kSize;
    info.bmiHeader.biHeight = -kSize;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    device_ = ::CreateCompatibleDC(nullptr);
    bitmap_ = ::CreateDIBSection(device_, &info, DIB_RGB_COLORS, &bits_, nullptr, 0);
    ::SelectObject(device_, bitmap_);
    std::fill_n(Pixels(), kSize * kSize, kMagenta);
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;
  ~Canvas() {
    ::DeleteDC(device_);
    ::DeleteObject(bitmap_);
  }

  HDC Device() const { return device_; }
  std::set<DWORD> Colours(const RECT& part) const {
    ::GdiFlush();
    std::set<DWORD> colours;
    for (LONG y = part.top; y < part.bottom; ++y) {
      for (LONG x = part.left; x < part.right; ++x)
        colours.insert(Pixels()[y * kSize + x] & 0xFFFFFF);
    }
    return colours;
  }

  static constexpr LONG kSize = 64;
  static constexpr DWORD kMagenta = 0xFF00FF;

 private:
  DWORD* Pixels() const { return static_cast<DWORD*>(bits_); }

  HDC device_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  void* bits_ = nullptr;
};

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
