// The bands inside hosts that have set the x87 unit to their liking: 24, 53 or 64 binary digits,
// any direction of rounding, and faults that stop the program instead of giving a number.
#include <gtest/gtest.h>

#include "tests/support/host_setting_windows.h"
#include "tests/ui/every_extent.h"
#include "tests/ui/ramp_oracle.h"
#include "ui/modDrawGradient.h"

namespace quorvane::testing {
namespace {

using modDrawGradient::DrawGradient;

// A quotient that shows whether a setting took hold of the unit.
long double OneThird() {
  volatile long double one = 1;
  volatile long double three = 3;
  return one / three;
}

class PanelOfWidth final : public Surface {
 public:
  explicit PanelOfWidth(double width) : width_(width) {}
  DeviceContext hDC() override { return DeviceContext{1}; }
  double Width() override { return width_; }
  double Height() override { return 300; }

 private:
  double width_;
};

void ExpectTheSameBandsUnder(unsigned value, unsigned mask) {
  BandRecorder recorder;
  for (std::int32_t extent = kFirstExtent; extent <= kLastExtent; extent += 29) {
    for (const std::int16_t direction : {std::int16_t{0}, std::int16_t{1}}) {
      const Ramp ramp = RampOfExtent(extent, direction);
      recorder.bands.clear();
      {
        const HostSetting setting(value, mask);
        DrawGradient(DeviceContext{1}, ramp.width, ramp.height, ramp.start, ramp.end, direction,
                     recorder);
      }
      const auto expected =
          BandsInFloatingPoint(ramp.width, ramp.height, ramp.start, ramp.end, direction);
      ASSERT_TRUE(recorder.bands == expected) << "extent " << extent << ", direction " << direction;
    }
  }
}

TEST(FloatingPointUnit, TakesTheSettingsOfThisTest) {
  const long double usual = OneThird();
  const HostSetting setting(_PC_24, _MCW_PC);
  EXPECT_NE(OneThird(), usual);
}

TEST(FloatingPointUnit, MayKeep24Digits) { ExpectTheSameBandsUnder(_PC_24, _MCW_PC); }

TEST(FloatingPointUnit, MayKeep53Digits) { ExpectTheSameBandsUnder(_PC_53, _MCW_PC); }

TEST(FloatingPointUnit, MayKeep64Digits) { ExpectTheSameBandsUnder(_PC_64, _MCW_PC); }

TEST(FloatingPointUnit, MayRoundUp) { ExpectTheSameBandsUnder(_RC_UP, _MCW_RC); }

TEST(FloatingPointUnit, MayRoundDown) { ExpectTheSameBandsUnder(_RC_DOWN, _MCW_RC); }

TEST(FloatingPointUnit, MayCutOff) {
  ExpectTheSameBandsUnder(_RC_CHOP | _PC_24, _MCW_RC | _MCW_PC);
}

TEST(FloatingPointUnit, MayKeep24DigitsWhileAPanelReadsItsSize) {
  for (const double width : {4522.4999999999, 4522.5, 4522.5000000001, 4537.5, 32766.4999999999}) {
    PanelOfWidth panel(width);
    BandRecorder usual;
    modDrawGradient::PaintFormGradient(panel, usual);
    BandRecorder recorder;
    {
      const HostSetting setting(_PC_24, _MCW_PC);
      modDrawGradient::PaintFormGradient(panel, recorder);
    }
    ASSERT_FALSE(usual.bands.empty());
    EXPECT_TRUE(recorder.bands == usual.bands) << width;
  }
}

TEST(FloatingPointUnit, MayTrapItsFaults) { ExpectTheSameBandsUnder(0, _MCW_EM); }

}  // namespace
}  // namespace quorvane::testing
