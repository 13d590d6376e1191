#pragma once

#include "platform/gdi32.h"

namespace quorvane {

/// Something to paint on: a panel on a form, or a picture. A reading that fails raises the
/// surface's own run-time error.
class Surface {
 public:
  virtual ~Surface() = default;

  /// Where painting goes; it belongs to the surface.
  [[nodiscard]] virtual DeviceContext hDC() = 0;
  /// The width in twips. A pixel is 15 twips, whatever the display.
  [[nodiscard]] virtual double Width() = 0;
  /// The height in twips.
  [[nodiscard]] virtual double Height() = 0;
};

}  // namespace quorvane
