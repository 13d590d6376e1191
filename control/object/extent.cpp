#include "control/object/extent.h"

#include <cstdint>

namespace quorvane::server {
namespace {

constexpr LONG kUnitsPerInch = 2540;
constexpr LONG kTwipsPerInch = 1440;
constexpr LONG kHalfPixel = 13;  // of 26.46 units, at 96 dots per inch

// The difference in 64 bits: a container may ask for anything.
bool AreNear(LONG ours, LONG asked) {
  const std::int64_t difference = std::int64_t{ours} - asked;
  return difference >= -kHalfPixel && difference <= kHalfPixel;
}

}  // namespace

LONG Extent::UnitsOf(float twips) {
  return static_cast<LONG>(twips * float{kUnitsPerInch} / float{kTwipsPerInch} + 0.5F);
}

SIZE Extent::Pixels() const {
  const HDC screen = ::GetDC(nullptr);
  const SIZE pixels{::MulDiv(size_.cx, ::GetDeviceCaps(screen, LOGPIXELSX), kUnitsPerInch),
                    ::MulDiv(size_.cy, ::GetDeviceCaps(screen, LOGPIXELSY), kUnitsPerInch)};
  ::ReleaseDC(nullptr, screen);
  return pixels;
}

bool Extent::IsNearly(const SIZEL& asked) const {
  return AreNear(size_.cx, asked.cx) && AreNear(size_.cy, asked.cy);
}

}  // namespace quorvane::server
