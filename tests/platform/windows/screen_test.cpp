// The pointer's shapes, as the user sees them.
#include "platform/screen.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "tests/support/raises.h"

namespace quorvane::testing {
namespace {

TEST(WindowsScreen, ShowsTheHourglassAndTheArrow) {
  screen().SetMousePointer(Screen::kHourglass);
  EXPECT_EQ(::GetCursor(), ::LoadCursorW(nullptr, IDC_WAIT));
  screen().SetMousePointer(Screen::kDefaultPointer);
  EXPECT_EQ(::GetCursor(), ::LoadCursorW(nullptr, IDC_ARROW));
  EXPECT_NE(::LoadCursorW(nullptr, IDC_WAIT), ::LoadCursorW(nullptr, IDC_ARROW));
}

TEST(WindowsScreen, LeavesThePointerAloneForAnyOtherNumber) {
  screen().SetMousePointer(Screen::kHourglass);
  for (std::int16_t shape = -1; shape <= 99; ++shape) {
    if (shape == Screen::kDefaultPointer || shape == Screen::kHourglass) continue;
    EXPECT_EQ(ErrorNumberOf([&] { screen().SetMousePointer(shape); }), 5) << shape;
  }
  EXPECT_EQ(::GetCursor(), ::LoadCursorW(nullptr, IDC_WAIT));
  screen().SetMousePointer(Screen::kDefaultPointer);
}

}  // namespace
}  // namespace quorvane::testing
