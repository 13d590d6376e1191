#pragma once

#include <cstdint>
#include <memory>

#include "platform/surface.h"

namespace quorvane {

/// A surface in memory whose pixels can be read back.
class Picture : public Surface {
 public:
  static constexpr std::int32_t kTwipsPerPixel = 15;  ///< whatever the display

  /// The width in pixels.
  [[nodiscard]] virtual std::int32_t PixelWidth() const = 0;
  /// The height in pixels.
  [[nodiscard]] virtual std::int32_t PixelHeight() const = 0;
  /// The colour of one pixel, counted from 0 at the top left corner. Raises subscript out of range
  /// (9) outside the picture.
  [[nodiscard]] virtual Colour PixelAt(std::int32_t x, std::int32_t y) = 0;
};

/// A picture of that many pixels, all in one colour. Raises invalid procedure call (5) for a size
/// below 1 and out of memory (7) when the system cannot hold it.
[[nodiscard]] std::unique_ptr<Picture> makePicture(std::int32_t width, std::int32_t height,
                                                   Colour background);

}  // namespace quorvane
