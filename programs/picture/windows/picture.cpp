#include "programs/picture/picture.h"

#include "platform/windows/os_headers.h"
#include "runtime/runtime_error.h"

namespace quorvane {
namespace {

// A bitmap of 32 bits a pixel, selected into a device context of its own.
class BitmapPicture final : public Picture {
 public:
  BitmapPicture(std::int32_t width, std::int32_t height) : width_(width), height_(height) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;  // the first row is the top one
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    device_ = ::CreateCompatibleDC(nullptr);
    bitmap_ = ::CreateDIBSection(device_, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    pixels_ = static_cast<const std::uint32_t*>(bits);
    if (bitmap_ != nullptr) replaced_ = ::SelectObject(device_, bitmap_);
  }
  BitmapPicture(const BitmapPicture&) = delete;
  BitmapPicture& operator=(const BitmapPicture&) = delete;
  ~BitmapPicture() override {
    if (replaced_ != nullptr) ::SelectObject(device_, replaced_);
    if (bitmap_ != nullptr) ::DeleteObject(bitmap_);
    if (device_ != nullptr) ::DeleteDC(device_);
  }

  [[nodiscard]] bool IsMade() const { return replaced_ != nullptr; }

  DeviceContext hDC() override {
    return static_cast<DeviceContext>(reinterpret_cast<std::intptr_t>(device_));
  }
  double Width() override { return double{kTwipsPerPixel} * width_; }
  double Height() override { return double{kTwipsPerPixel} * height_; }
  std::int32_t PixelWidth() const override { return width_; }
  std::int32_t PixelHeight() const override { return height_; }

  Colour PixelAt(std::int32_t x, std::int32_t y) override {
    const bool inside = x >= 0 && x < width_ && y >= 0 && y < height_;
    if (!inside) Raise(ErrorNumber::kSubscriptOutOfRange);
    ::GdiFlush();
    const std::uint32_t pixel =
        pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                static_cast<std::size_t>(x)];
    // The bitmap keeps blue lowest, a colour keeps red lowest.
    return static_cast<Colour>((pixel & 0x00FF00) | ((pixel >> 16) & 0xFF) |
                               ((pixel & 0xFF) << 16));
  }

 private:
  std::int32_t width_;
  std::int32_t height_;
  HDC device_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ replaced_ = nullptr;
  const std::uint32_t* pixels_ = nullptr;
};

}  // namespace

std::unique_ptr<Picture> makePicture(std::int32_t width, std::int32_t height, Colour background) {
  if (width < 1 || height < 1) Raise(ErrorNumber::kInvalidProcedureCall);
  auto picture = std::make_unique<BitmapPicture>(width, height);
  if (!picture->IsMade()) Raise(ErrorNumber::kOutOfMemory);
  const Brush brush = gdi32().CreateSolidBrush(background);
  gdi32().FillRect(picture->hDC(), {0, 0, width, height}, brush);
  gdi32().DeleteObject(brush);
  return picture;
}

}  // namespace quorvane
