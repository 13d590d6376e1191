// What the stand-in of the graphics library refuses to paint with, or on.

#include "platform/gdi32.h"

#include <gtest/gtest.h>

namespace quorvane {
namespace {

TEST(PosixGdi32, PaintsNothingWithoutAPicture) {
  const Brush brush = gdi32().CreateSolidBrush(0x00FF00);
  EXPECT_EQ(gdi32().FillRect(DeviceContext{0}, {0, 0, 1, 1}, brush), 0);
  EXPECT_EQ(gdi32().DeleteObject(brush), 1);
}

}  // namespace
}  // namespace quorvane
