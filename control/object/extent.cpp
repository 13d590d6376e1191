#include "control/object/extent.h"

namespace quorvane::component {
namespace {

constexpr LONG kUnitsPerInch = 2540;
constexpr LONG kTwipsPerInch = 1440;

}  // namespace

LONG Extent::UnitsOf(float twips) {
  return static_cast<LONG>(twips * float{kUnitsPerInch} / float{kTwipsPerInch} + 0.5F);
}

// Kept: pixels are those of the screen's density, 28 at 96 dots per inch and 35 at 120, while the
// painter counts 15 twips for a pixel anywhere. On a form whose places are pixels the square grows.
// Pinned by Extent.HasMorePixelsOnADenserDisplay.
SIZE Extent::Pixels() const {
  const HDC screen = ::GetDC(nullptr);
  const SIZE pixels{::MulDiv(size_.cx, ::GetDeviceCaps(screen, LOGPIXELSX), kUnitsPerInch),
                    ::MulDiv(size_.cy, ::GetDeviceCaps(screen, LOGPIXELSY), kUnitsPerInch)};
  ::ReleaseDC(nullptr, screen);
  return pixels;
}

}  // namespace quorvane::component
