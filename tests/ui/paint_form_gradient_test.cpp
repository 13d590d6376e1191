// The panel's ramp: which readings it takes and in which order, how it rounds them, and that a
// reading that fails reaches the caller before anything is painted.
#include <gtest/gtest.h>

#include <limits>

#include "tests/support/fake_gdi32.h"
#include "tests/support/raises.h"
#include "ui/modDrawGradient.h"

namespace quorvane::testing {
namespace {

using modDrawGradient::DrawGradient;
using modDrawGradient::PaintFormGradient;

class FakeSurface final : public Surface {
 public:
  FakeSurface(double width, double height, FaultPlan faults = FaultPlan())
      : width_(width), height_(height), faults_(faults) {}

  DeviceContext hDC() override {
    Log("hDC");
    return DeviceContext{5};
  }
  double Width() override {
    Log("Width");
    return width_;
  }
  double Height() override {
    Log("Height");
    return height_;
  }

  CallLog readings;

 private:
  void Log(const char* name) {
    readings.emplace_back(name);
    if (faults_.NextCallFails()) Raise(91, u"the panel");
  }

  double width_;
  double height_;
  FaultPlan faults_;
};

CallLog CallsFor(double width, double height) {
  FakeSurface surface(width, height);
  FakeGdi32 gdi;
  PaintFormGradient(surface, gdi);
  return gdi.calls;
}

TEST(PaintFormGradient, PaintsTheHouseColoursFromTopToBottom) {
  FakeGdi32 expected;
  DrawGradient(DeviceContext{5}, 6000, 3000, 196 + 256 * 219 + 65536 * 249, 0xFFFFFF, 1, expected);
  EXPECT_EQ(expected.calls.size(), 3U * 196U);
  EXPECT_EQ(CallsFor(6000, 3000), expected.calls);
}

TEST(PaintFormGradient, ReadsDeviceContextWidthAndHeightInThisOrder) {
  FakeSurface surface(6000, 3000);
  FakeGdi32 gdi;
  PaintFormGradient(surface, gdi);
  EXPECT_EQ(surface.readings, (CallLog{"hDC", "Width", "Height"}));
}

TEST(PaintFormGradient, RoundsTheSizesToWholeTwipsTiesToEven) {
  // 4530 twips are 302 pixels; from 4538 on it would be 303.
  EXPECT_EQ(CallsFor(4537.5, 300), CallsFor(4538, 300));
  EXPECT_EQ(CallsFor(4522.5, 300), CallsFor(4522, 300));
  EXPECT_NE(CallsFor(4537, 300), CallsFor(4538, 300));
  EXPECT_NE(CallsFor(4522, 300), CallsFor(4523, 300));
  EXPECT_EQ(CallsFor(4530.5, 300), CallsFor(4530, 300));
  EXPECT_EQ(CallsFor(4531.5, 300), CallsFor(4532, 300));
  EXPECT_TRUE(CallsFor(300, 67.499999999).empty());
  EXPECT_EQ(CallsFor(300, 67.5), CallsFor(300, 68));
}

TEST(PaintFormGradient, RaisesWhatAReadingRaisesAndPaintsNothing) {
  for (int n = 1; n <= 3; ++n) {
    FakeSurface surface(6000, 3000, FaultPlan(n));
    FakeGdi32 gdi;
    const auto error = ErrorOf([&] { PaintFormGradient(surface, gdi); });
    ASSERT_TRUE(error) << n;
    EXPECT_EQ(error->number, 91);
    EXPECT_EQ(error->source, Text(u"the panel"));
    EXPECT_EQ(surface.readings.size(), static_cast<std::size_t>(n));
    EXPECT_TRUE(gdi.calls.empty());
  }
}

TEST(PaintFormGradient, RaisesOverflowForASizeBeyond32Bits) {
  const auto number = [](double width, double height) {
    return ErrorNumberOf([&] { static_cast<void>(CallsFor(width, height)); });
  };
  EXPECT_EQ(number(3e9, 300), 6);
  EXPECT_EQ(number(300, -3e9), 6);
  EXPECT_EQ(number(std::numeric_limits<double>::quiet_NaN(), 300), 6);
  EXPECT_EQ(number(std::numeric_limits<double>::infinity(), 300), 6);
}

}  // namespace
}  // namespace quorvane::testing
