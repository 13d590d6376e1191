#pragma once

#include <cstddef>
#include <vector>

#include "platform/gdi32.h"

namespace quorvane {

/// What the stand-in of the graphics library paints on: the pixels behind a device context.
class Pixels {
 public:
  /// All in one colour. Raises std::bad_alloc or std::length_error when there is no memory for
  /// them.
  Pixels(std::int32_t width, std::int32_t height, Colour background);
  Pixels(const Pixels&) = delete;
  Pixels& operator=(const Pixels&) = delete;
  ~Pixels() = default;

  /// The handle by which the stand-in finds them.
  [[nodiscard]] DeviceContext Handle();
  /// The colour of one pixel, counted from 0 at the top left corner. Raises subscript out of range
  /// (9) outside.
  [[nodiscard]] Colour At(std::int32_t x, std::int32_t y) const;
  /// Colours what the rectangle and the pixels share. One whose Right lies before its Left holds
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
