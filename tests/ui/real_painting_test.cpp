// Painting for real: the ramp in a picture in memory, read back pixel by pixel. On Windows the
// system's own graphics library paints, elsewhere the stand-in.
#include <gtest/gtest.h>

#include <algorithm>

#include "programs/picture/picture.h"
#include "tests/support/fake_gdi32.h"
#include "tests/support/raises.h"
#include "ui/modDrawGradient.h"

namespace quorvane::testing {
namespace {

using modDrawGradient::DrawGradient;
using modDrawGradient::PaintFormGradient;

constexpr Colour kBackground = 0x123456;
constexpr Colour kStart = 196 + 256 * 219 + 65536 * 249;

// Line k bears the colour of band k, and the last band's colour fills the last three lines.
void ExpectRamp(Picture& picture, const std::vector<PaintedBand>& bands, bool down) {
  const auto count = static_cast<std::int32_t>(bands.size());
  for (std::int32_t y = 0; y < picture.PixelHeight(); ++y) {
    for (std::int32_t x = 0; x < picture.PixelWidth(); ++x) {
      const std::int32_t along = down ? y : x;
      const bool painted =
          x < picture.PixelWidth() - 2 && y < picture.PixelHeight() - 2 && along < count + 2;
      const auto band = static_cast<std::size_t>(std::min(along, count - 1));
      ASSERT_EQ(picture.PixelAt(x, y), painted ? bands[band].colour : kBackground) << x << ' ' << y;
    }
  }
}

TEST(Picture, ShowsThePanelsRamp) {
  const auto picture = makePicture(120, 200, kBackground);
  PaintFormGradient(*picture);
  BandRecorder recorder;
  PaintFormGradient(*picture, recorder);
  ASSERT_EQ(recorder.bands.size(), 196U);
  ExpectRamp(*picture, recorder.bands, true);
}

TEST(Picture, ShowsARampFromLeftToRight) {
  const auto picture = makePicture(300, 40, kBackground);
  BandRecorder recorder;
  DrawGradient(picture->hDC(), 300 * 15, 40 * 15, 0x0000FF, 0xFF8000, 0);
  DrawGradient(picture->hDC(), 300 * 15, 40 * 15, 0x0000FF, 0xFF8000, 0, recorder);
  ASSERT_EQ(recorder.bands.size(), 296U);
  ExpectRamp(*picture, recorder.bands, false);
}

TEST(Picture, ShowsNothingOfBandsWithoutWidth) {
  const auto picture = makePicture(10, 100, kBackground);
  DrawGradient(picture->hDC(), 2 * 15, 100 * 15, kStart, 0xFFFFFF, 1);
  for (std::int32_t y = 0; y < 100; ++y) {
    for (std::int32_t x = 0; x < 10; ++x) ASSERT_EQ(picture->PixelAt(x, y), kBackground);
  }
}

// FillRect takes a rectangle whose right lies before its left as turned about, with the left column
// inside and the right one outside. So of bands that end at -2 the surface shows one column.
TEST(Picture, ShowsOneColumnOfBandsTurnedAbout) {
  const auto picture = makePicture(10, 100, kBackground);
  BandRecorder recorder;
  DrawGradient(picture->hDC(), 40000, 100 * 15, kStart, 0xFFFFFF, 1);
  DrawGradient(picture->hDC(), 40000, 100 * 15, kStart, 0xFFFFFF, 1, recorder);
  for (std::int32_t y = 0; y < 98; ++y) {
    const auto band = static_cast<std::size_t>(std::min(y, 95));
    ASSERT_EQ(picture->PixelAt(0, y), recorder.bands[band].colour) << y;
    for (std::int32_t x = 1; x < 10; ++x) ASSERT_EQ(picture->PixelAt(x, y), kBackground) << y;
  }
}

TEST(Picture, PaintsTheSameOverItself) {
  const auto picture = makePicture(50, 90, kBackground);
  PaintFormGradient(*picture);
  const Colour before = picture->PixelAt(7, 41);
  PaintFormGradient(*picture);
  EXPECT_EQ(picture->PixelAt(7, 41), before);
}

TEST(Picture, CutsARampThatIsLargerThanItself) {
  const auto picture = makePicture(20, 20, kBackground);
  DrawGradient(picture->hDC(), 30000, 30000, kStart, kStart, 1);
  EXPECT_EQ(picture->PixelAt(19, 19), kStart);
}

TEST(Picture, TellsItsSizeInTwips) {
  const auto picture = makePicture(7, 11, kBackground);
  EXPECT_EQ(picture->Width(), 105.0);
  EXPECT_EQ(picture->Height(), 165.0);
}

TEST(Picture, RaisesForSizesAndPlacesThatItCannotHave) {
  EXPECT_EQ(ErrorNumberOf([] { static_cast<void>(makePicture(0, 1, 0)); }), 5);
  EXPECT_EQ(ErrorNumberOf([] { static_cast<void>(makePicture(1, -1, 0)); }), 5);
  const auto picture = makePicture(2, 2, kBackground);
  EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(picture->PixelAt(2, 0)); }), 9);
  EXPECT_EQ(ErrorNumberOf([&] { static_cast<void>(picture->PixelAt(0, -1)); }), 9);
}

TEST(Gdi32, PaintsOfARectangleWhatLiesInThePicture) {
  const Brush brush = gdi32().CreateSolidBrush(0x00FF00);
  const auto holds = [](std::int32_t start, std::int32_t end, std::int32_t place) {
    return end < start ? place > end && place <= start : place >= start && place < end;
  };
  for (const Rect& area : std::initializer_list<Rect>{{-2, -2, 2, 2},
                                                      {1, 1, 9, 9},
                                                      {-3, 1, 0, 2},
                                                      {1, -3, 2, 0},
                                                      {3, 0, 5, 3},
                                                      {-1, -1, 4, 4},
                                                      {1, 0, 1, 3},
                                                      {2, 2, 0, 0},
                                                      {5, 1, 1, -4}}) {
    const auto picture = makePicture(3, 3, kBackground);
    EXPECT_NE(gdi32().FillRect(picture->hDC(), area, brush), 0);
    for (std::int32_t y = 0; y < 3; ++y) {
      for (std::int32_t x = 0; x < 3; ++x) {
        const bool painted = holds(area.Left, area.Right, x) && holds(area.Top, area.Bottom, y);
        EXPECT_EQ(picture->PixelAt(x, y), painted ? 0x00FF00 : kBackground)
            << area.Left << ',' << area.Top << ": " << x << ',' << y;
      }
    }
  }
  EXPECT_NE(gdi32().DeleteObject(brush), 0);
}

TEST(Gdi32, RefusesBrushesThatDoNotExist) {
  const auto picture = makePicture(2, 2, kBackground);
  EXPECT_EQ(gdi32().DeleteObject(Brush{0}), 0);
  const Brush brush = gdi32().CreateSolidBrush(0x00FF00);
  EXPECT_NE(brush, Brush{0});
  EXPECT_NE(gdi32().FillRect(picture->hDC(), {0, 0, 1, 1}, brush), 0);
  EXPECT_NE(gdi32().DeleteObject(brush), 0);
  EXPECT_EQ(picture->PixelAt(0, 0), 0x00FF00);
  EXPECT_EQ(picture->PixelAt(1, 1), kBackground);
}

}  // namespace
}  // namespace quorvane::testing
