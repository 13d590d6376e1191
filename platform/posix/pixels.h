#pragma once

#include <cstddef>
#include <vector>

#include "platform/gdi32.h"

namespace quorvane {

/// What the stand-in of the graphics library paints on: the pixels behind a device context, row by
/// row from the top, all of one colour at first.
struct Pixels {
  Pixels(std::int32_t pixels_across, std::int32_t pixels_down, Colour background)
      : width(pixels_across),
        height(pixels_down),
        colours(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), background) {}

  /// The one at a place, counted from 0 at the top left corner, which lies inside.
  [[nodiscard]] Colour& At(std::int32_t x, std::int32_t y) {
    return colours[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                   static_cast<std::size_t>(x)];
  }

  /// The handle by which the stand-in finds them, as long as they do not move.
  [[nodiscard]] DeviceContext Handle() {
    return static_cast<DeviceContext>(reinterpret_cast<std::intptr_t>(this));
  }

  std::int32_t width;
  std::int32_t height;
  std::vector<Colour> colours;
};

}  // namespace quorvane
