#pragma once

#include <vector>

#include "platform/picture.h"

namespace quorvane {

/// The pixels behind a device context of the stand-in.
class PictureInMemory final : public Picture {
 public:
  PictureInMemory(std::int32_t width, std::int32_t height, Colour background);

  DeviceContext hDC() override;
  double Width() override { return double{kTwipsPerPixel} * width_; }
  double Height() override { return double{kTwipsPerPixel} * height_; }
  std::int32_t PixelWidth() const override { return width_; }
  std::int32_t PixelHeight() const override { return height_; }
  Colour PixelAt(std::int32_t x, std::int32_t y) override;

  /// Colours what the rectangle and the picture share. One whose Right lies before its Left holds
  /// the columns from Right + 1 to Left; and so with Bottom and Top.
  void Fill(const Rect& rectangle, Colour colour);

 private:
  [[nodiscard]] std::size_t Index(std::int32_t x, std::int32_t y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
           static_cast<std::size_t>(x);
  }

  std::int32_t width_;
  std::int32_t height_;
  std::vector<Colour> pixels_;
};

}  // namespace quorvane
