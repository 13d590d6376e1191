// Proves that numbers become the same integers inside hosts that have set the floating-point unit
// to their liking.

#include <gtest/gtest.h>

#include "runtime/rounding.h"
#include "tests/support/host_setting_windows.h"

namespace quorvane {
namespace {

TEST(RoundTo32, IsTheSameInEveryHost) {
  testing::UnderEveryHostSetting([] {
    EXPECT_EQ(RoundTo32(123456789), 123456789);
    EXPECT_EQ(RoundTo32(2147483647), 2147483647);
    EXPECT_EQ(RoundTo32(16777217.5), 16777218);
    EXPECT_EQ(RoundTo32(1073741824.5), 1073741824);
    EXPECT_EQ(RoundTo32(-2.5), -2);
    EXPECT_EQ(RoundTo32(0.50000000000000011), 1);
    EXPECT_EQ(RoundTo32(-0.49999999999999994), 0);
  });
}

}  // namespace
}  // namespace quorvane
