#include "programs/picture/picture.h"

#include "platform/posix/pixels.h"
#include "runtime/runtime_error.h"

namespace quorvane {
namespace {

class PictureInMemory final : public Picture {
 public:
  PictureInMemory(std::int32_t width, std::int32_t height, Colour background)
      : width_(width), height_(height), pixels_(width, height, background) {}

  DeviceContext hDC() override { return pixels_.Handle(); }
  double Width() override { return double{kTwipsPerPixel} * width_; }
  double Height() override { return double{kTwipsPerPixel} * height_; }
  [[nodiscard]] std::int32_t PixelWidth() const override { return width_; }
  [[nodiscard]] std::int32_t PixelHeight() const override { return height_; }
  Colour PixelAt(std::int32_t x, std::int32_t y) override { return pixels_.At(x, y); }

 private:
  std::int32_t width_;
  std::int32_t height_;
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
