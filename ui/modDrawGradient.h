#pragma once

#include <cstdint>

#include "platform/gdi32.h"
#include "platform/surface.h"

namespace quorvane::modDrawGradient {

/// Fills a drawing surface with a smooth ramp between two colours: a band three pixels thick steps
/// across the surface pixel by pixel, each time in a solid colour a little further along the ramp,
/// and paints over two lines of the one before. The sequence of bands and colours is the same, bit
/// for bit, in every build and in every host.
///
/// Width, Height  in twips, 15 of them to a pixel. One outside -32768 to 32767 counts as 0.
/// Direction      0: from left to right; 1: from top to bottom; any other paints nothing.
/// hDC            where the bands go. Results of the three calls are not looked at; the brush of a
///                band is made just before its use and deleted just after, so one lives at a time.
///
/// The size along the ramp gives the count of bands: none below 68 twips, one from 68 to 82, and
/// one more for each further 15. Colours beyond 24 bits are left open.
///
/// Never fails and never stops early: an assignment that fails (overflow, division by zero) is
/// dropped, its variable keeps the value it had, 0 at first, and the next one is made.
///
/// Kept: 60, 5 and 2 are fixed allowances. So two pixels at the bottom and at the right stay
/// unpainted, and the ramp stops a little short of EndColor, which sets its slope only. With any
/// others each painted panel would look different. Pinned by
/// DrawGradient.LeavesTwoPixelsAtTheEndAndAtTheSideUnpainted.
///
/// Kept: twips are pixels times 15 on a display of any density; there the ramp covers another share
/// of the surface. Pinned by DrawGradient.TakesFifteenTwipsForAPixel.
///
/// Kept: a size that does not fit 16 bits counts as 0, so the bands across it end at -2 and show
/// at most one column, while all the calls are made. Pinned by
/// DrawGradient.CountsASizeBeyondSixteenBitsAsZero.
void DrawGradient(DeviceContext hDC, std::int32_t Width, std::int32_t Height, Colour StartColor,
                  Colour EndColor, std::int16_t Direction, Gdi32& gdi = gdi32());

/// Paints a panel in the house's colours, from (196, 219, 249) at the top towards white.
///
/// Reads the surface's device context, width and height, in this order, and rounds the sizes to
/// whole twips, ties to even. Raises what a reading raises, and overflow (6) for a size beyond 32
/// bits; nothing is painted then.
void PaintFormGradient(Surface& surface, Gdi32& gdi = gdi32());

}  // namespace quorvane::modDrawGradient
