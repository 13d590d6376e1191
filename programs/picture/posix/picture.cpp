#include "programs/picture/picture.h"

#include "platform/posix/pixels.h"
#include "runtime/runtime_error.h"

namespace quorvane {
namespace {

class PictureInMemory final : public Picture {
 public:
  PictureInMemory(std::int32_t width, std::int32_t height, Colour background)
      : pixels_(width, height, background) {}

  DeviceContext hDC() override { return pixels_.Handle(); }
  double Width() override { return double{kTwipsPerPixel} * pixels_.width; }
  double Height() override { return double{kTwipsPerPixel} * pixels_.height; }
  [[nodiscard]] std::int32_t PixelWidth() const override { return pixels_.width; }
  [[nodiscard]] std::int32_t PixelHeight() const override { return pixels_.height; }
  Colour PixelAt(std::int32_t x, std::int32_t y) override {
    const bool inside = x >= 0 && x < pixels_.width && y >= 0 && y < pixels_.height;
    if (!inside) Raise(ErrorNumber::kSubscriptOutOfRange);
    return pixels_.At(x, y);
  }

 private:
  Pixels pixels_;
};

}  // namespace

std::unique_ptr<Picture> makePicture(std::int32_t width, std::int32_t height, Colour background) {
  if (width < 1 || height < 1) Raise(ErrorNumber::kInvalidProcedureCall);
  try {
    return std::make_unique<PictureInMemory>(width, height, background);
  } catch (const std::exception&) {
    Raise(ErrorNumber::kOutOfMemory);
  }
}

}  // namespace quorvane
