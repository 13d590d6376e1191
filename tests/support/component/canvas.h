#pragma once

#include <algorithm>
#include <set>

#include "tests/support/component/com.h"

namespace quorvane::component {

/// A picture in memory to draw on, all magenta at first.
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

}  // namespace quorvane::component
