// Every size from -100 to 32767 twips in both directions: the bands against the same worked out in
// floating point.
#include <gtest/gtest.h>

#include "tests/support/thinned.h"
#include "tests/ui/every_extent.h"
#include "tests/ui/ramp_oracle.h"
#include "ui/modDrawGradient.h"

namespace quorvane::testing {
namespace {

using modDrawGradient::DrawGradient;

void ExpectAgreement(std::int16_t direction, std::int32_t stride) {
  BandRecorder recorder;
  for (std::int32_t extent = kFirstExtent; extent <= kLastExtent; extent += stride) {
    const Ramp ramp = RampOfExtent(extent, direction);
    recorder.bands.clear();
    DrawGradient(DeviceContext{1}, ramp.width, ramp.height, ramp.start, ramp.end, direction,
                 recorder);
    const auto expected =
        BandsInFloatingPoint(ramp.width, ramp.height, ramp.start, ramp.end, direction);
    ASSERT_TRUE(recorder.bands == expected) << "extent " << extent << ", direction " << direction;
  }
}

TEST(EveryExtent, GivesTheBandsOfFloatingPointFromLeftToRight) { ExpectAgreement(0, kOneIn); }

TEST(EveryExtent, GivesTheBandsOfFloatingPointFromTopToBottom) { ExpectAgreement(1, kOneIn); }

// Only a negative colour's blue is below zero. Sums that come to next to nothing keep all their
// digits.
TEST(SomeExtents, GiveTheBandsOfFloatingPointWhereBlueRisesThroughZero) {
  constexpr Colour kStart = -127 * 65536;
  constexpr Colour kEnd = 127 * 65536;
  for (std::int32_t extent = kFirstExtent; extent < 1000; ++extent) {
    BandRecorder recorder;
    DrawGradient(DeviceContext{1}, extent, 300, kStart, kEnd, 0, recorder);
    ASSERT_EQ(recorder.bands, BandsInFloatingPoint(extent, 300, kStart, kEnd, 0)) << extent;
  }
}

// For the builds at each level of optimisation.
TEST(SomeExtents, GiveTheBandsOfFloatingPoint) {
  ExpectAgreement(0, 13);
  ExpectAgreement(1, 13);
}

}  // namespace
}  // namespace quorvane::testing
