// The painter when memory runs out: a dropped assignment stays dropped, and the run goes on.

#include <gtest/gtest.h>

#include <utility>

#include "tests/support/failing_memory.h"
#include "ui/modDrawGradient.h"

namespace quorvane::testing {
namespace {

class CountingGdi32 final : public Gdi32 {
 public:
  Brush CreateSolidBrush(Colour /*colour*/) override { return Brush{1}; }
  std::int32_t FillRect(DeviceContext /*hDC*/, const Rect& band, Brush /*brush*/) override {
    ++bands;
    right = band.Right;
    return 1;
  }
  std::int32_t DeleteObject(Brush /*brush*/) override { return 1; }

  int bands = 0;
  std::int32_t right = 0;
};

TEST(ExhaustedMemory, DropsAnAssignmentAndPaintsOn) {
  const int failures = FailEachAllocation([](auto arm, auto disarm) {
    CountingGdi32 gdi;
    arm();
    modDrawGradient::DrawGradient(DeviceContext{1}, 40000, 4500, 0, 0xFFFFFF, 1, gdi);
    disarm();
    EXPECT_EQ(gdi.bands, 296);
    EXPECT_EQ(gdi.right, -2);
  });
  EXPECT_GE(failures, 2);
}

class PlainSurface final : public Surface {
 public:
  DeviceContext hDC() override { return DeviceContext{1}; }
  double Width() override { return 6000.5; }
  double Height() override { return 3000; }
};

TEST(ExhaustedMemory, DoesNotMatterToAPanel) {
  FailEachAllocation([](auto arm, auto disarm) {
    CountingGdi32 gdi;
    PlainSurface panel;
    arm();
    modDrawGradient::PaintFormGradient(panel, gdi);
    EXPECT_FALSE(disarm());
    EXPECT_EQ(gdi.bands, 196);
    EXPECT_EQ(gdi.right, 398);
  });
}

}  // namespace
}  // namespace quorvane::testing
