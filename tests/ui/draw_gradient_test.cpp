// The painter's bands and calls: a worked run, the allowances, the sizes and directions that paint
// nothing, dropped assignments, and results that nobody looks at.
#include <gtest/gtest.h>

#include <limits>
#include <set>

#include "tests/support/fake_gdi32.h"
#include "ui/modDrawGradient.h"

namespace quorvane::testing {
namespace {

using modDrawGradient::DrawGradient;

constexpr DeviceContext kDevice{77};
constexpr Colour kBlack = 0;
constexpr Colour kWhite = 0xFFFFFF;

Colour Rgb(int red, int green, int blue) { return red + 256 * green + 65536 * blue; }

std::vector<PaintedBand> Bands(std::int32_t width, std::int32_t height, Colour start, Colour end,
                               std::int16_t direction) {
  BandRecorder recorder;
  DrawGradient(kDevice, width, height, start, end, direction, recorder);
  return recorder.bands;
}

const Colour kPanelStart = Rgb(196, 219, 249);

TEST(DrawGradient, PaintsTheWorkedRunFromTopToBottom) {
  const auto bands = Bands(6000, 3000, kPanelStart, kWhite, 1);
  ASSERT_EQ(bands.size(), 196U);
  const auto expect = [&](int index, Colour colour) {
    const PaintedBand expected{{0, index, 398, index + 3}, colour};
    EXPECT_EQ(bands[static_cast<std::size_t>(index)], expected) << index;
  };
  expect(0, Rgb(196, 219, 249));
  expect(1, Rgb(196, 219, 249));
  expect(50, Rgb(211, 228, 251));
  expect(100, Rgb(226, 237, 252));
  expect(150, Rgb(241, 247, 254));
  expect(194, Rgb(254, 255, 255));
  expect(195, Rgb(255, 255, 255));
}

TEST(DrawGradient, PaintsFromLeftToRight) {
  const auto bands = Bands(3000, 4500, kPanelStart, kWhite, 0);
  ASSERT_EQ(bands.size(), 196U);
  EXPECT_EQ(bands.front().band, (Rect{0, 0, 3, 298}));
  EXPECT_EQ(bands.back().band, (Rect{195, 0, 198, 298}));
}

TEST(DrawGradient, CountsBandsByTheSizeAlongTheRamp) {
  for (const std::int16_t direction : {std::int16_t{0}, std::int16_t{1}}) {
    const auto count = [&](std::int32_t extent) {
      return direction == 1 ? Bands(3000, extent, kBlack, kWhite, 1).size()
                            : Bands(extent, 3000, kBlack, kWhite, 0).size();
    };
    EXPECT_EQ(count(67), 0U);
    EXPECT_EQ(count(68), 1U);
    EXPECT_EQ(count(82), 1U);
    EXPECT_EQ(count(83), 2U);
    EXPECT_EQ(count(97), 2U);
    EXPECT_EQ(count(98), 3U);
    EXPECT_EQ(count(112), 3U);
    EXPECT_EQ(count(113), 4U);
    EXPECT_EQ(count(32767), 2180U);
  }
}

TEST(DrawGradient, PaintsASingleBandInTheStartColour) {
  const auto bands = Bands(3000, 68, Rgb(1, 2, 3), kWhite, 1);
  ASSERT_EQ(bands.size(), 1U);
  EXPECT_EQ(bands[0], (PaintedBand{{0, 0, 198, 3}, Rgb(1, 2, 3)}));
}

TEST(DrawGradient, LeavesTwoPixelsAtTheEndAndAtTheSideUnpainted) {
  const auto down = Bands(100 * 15, 200 * 15, kBlack, kWhite, 1);
  EXPECT_EQ(down.back().band, (Rect{0, 195, 98, 198}));
  EXPECT_NE(down.back().colour, kWhite);
  const auto across = Bands(200 * 15, 100 * 15, kBlack, kWhite, 0);
  EXPECT_EQ(across.back().band, (Rect{195, 0, 198, 98}));
  EXPECT_NE(across.back().colour, kWhite);
}

TEST(DrawGradient, TakesFifteenTwipsForAPixel) {
  EXPECT_EQ(Bands(15000, 3000, kBlack, kWhite, 1).front().band.Right, 1000 - 2);
  // Sizes between two pixels go to the nearer one.
  EXPECT_EQ(Bands(15007, 3000, kBlack, kWhite, 1).front().band.Right, 1000 - 2);
  EXPECT_EQ(Bands(15008, 3000, kBlack, kWhite, 1).front().band.Right, 1001 - 2);
}

TEST(DrawGradient, PaintsNothingInOtherDirections) {
  for (const int direction : {-1, 2, 3, 256, 32767, -32768}) {
    FakeGdi32 gdi;
    DrawGradient(kDevice, 6000, 3000, kBlack, kWhite, static_cast<std::int16_t>(direction), gdi);
    EXPECT_TRUE(gdi.calls.empty()) << direction;
  }
}

TEST(DrawGradient, PaintsNothingOnASurfaceWithoutSize) {
  EXPECT_TRUE(Bands(0, 0, kBlack, kWhite, 0).empty());
  EXPECT_TRUE(Bands(0, 0, kBlack, kWhite, 1).empty());
  EXPECT_TRUE(Bands(0, 0, kBlack, kWhite, 2).empty());
}

TEST(DrawGradient, PaintsNothingWhereTheStepsDivideByZero) {
  EXPECT_TRUE(Bands(3000, 60, kBlack, kWhite, 1).empty());
  EXPECT_TRUE(Bands(60, 3000, kBlack, kWhite, 0).empty());
}

TEST(DrawGradient, PaintsNothingForNegativeSizesAlongTheRamp) {
  for (const int extent : {-1, -15, -1000, -32708, -32709, -32768, -32769}) {
    EXPECT_TRUE(Bands(3000, extent, kBlack, kWhite, 1).empty()) << extent;
    EXPECT_TRUE(Bands(extent, 3000, kBlack, kWhite, 0).empty()) << extent;
  }
}

TEST(DrawGradient, HandsOutBandsWithoutWidthAsTheyAre) {
  EXPECT_EQ(Bands(37, 4500, kBlack, kWhite, 1).at(0).band, (Rect{0, 0, 0, 3}));
  EXPECT_EQ(Bands(22, 4500, kBlack, kWhite, 1).at(0).band, (Rect{0, 0, -1, 3}));
  EXPECT_EQ(Bands(0, 4500, kBlack, kWhite, 1).at(0).band, (Rect{0, 0, -2, 3}));
  EXPECT_EQ(Bands(-15, 4500, kBlack, kWhite, 1).at(0).band, (Rect{0, 0, -3, 3}));
  EXPECT_EQ(Bands(4500, 37, kBlack, kWhite, 0).at(0).band, (Rect{0, 0, 3, 0}));
  EXPECT_EQ(Bands(4500, 0, kBlack, kWhite, 0).at(0).band, (Rect{0, 0, 3, -2}));
  EXPECT_EQ(Bands(38, 4500, kBlack, kWhite, 1).at(0).band, (Rect{0, 0, 1, 3}));
}

TEST(DrawGradient, CountsASizeBeyondSixteenBitsAsZero) {
  const auto bands = Bands(40000, 4500, kBlack, kWhite, 1);
  const auto usual = Bands(4500, 4500, kBlack, kWhite, 1);
  ASSERT_EQ(bands.size(), 296U);
  for (std::size_t i = 0; i < bands.size(); ++i) {
    const auto line = static_cast<std::int32_t>(i);
    ASSERT_EQ(bands[i].band, (Rect{0, line, -2, line + 3}));
    ASSERT_EQ(bands[i].colour, usual[i].colour);
  }
  EXPECT_TRUE(Bands(4500, 40000, kBlack, kWhite, 1).empty());
  EXPECT_TRUE(Bands(32768, 4500, kBlack, kWhite, 0).empty());
  EXPECT_EQ(Bands(4500, -32769, kBlack, kWhite, 0).at(0).band.Bottom, -2);
  EXPECT_EQ(
      Bands(std::numeric_limits<std::int32_t>::min(), 4500, kBlack, kWhite, 1).at(0).band.Right,
      -2);
}

TEST(DrawGradient, StaysInOneColourWhenStartAndEndAreEqual) {
  std::set<Colour> colours;
  for (const PaintedBand& band : Bands(3000, 30000, Rgb(1, 128, 255), Rgb(1, 128, 255), 1)) {
    colours.insert(band.colour);
  }
  EXPECT_EQ(colours, std::set<Colour>{Rgb(1, 128, 255)});
}

TEST(DrawGradient, RunsDownFromABrighterStart) {
  // Each band is 255 / 180 x 15 = 21.25 below the one before.
  const auto bands = Bands(3000, 60 + 180, kWhite, kBlack, 1);
  const std::vector<int> levels{255, 234, 212, 191, 170, 149, 128, 106, 85, 64, 42, 21};
  ASSERT_EQ(bands.size(), levels.size());
  for (std::size_t i = 0; i < levels.size(); ++i) {
    EXPECT_EQ(bands[i].colour, Rgb(levels[i], levels[i], levels[i])) << i;
  }
}

TEST(DrawGradient, RoundsTiesToEven) {
  // Steps of exactly one half: eight levels over 8 x 30 twips.
  const auto bands = Bands(3000, 60 + 30 * 8, Rgb(0, 8, 0), Rgb(8, 0, 8), 1);
  const std::vector<int> rising{0, 0, 1, 2, 2, 2, 3, 4, 4, 4, 5, 6, 6, 6, 7, 8};
  const std::vector<int> falling{8, 8, 7, 6, 6, 6, 5, 4, 4, 4, 3, 2, 2, 2, 1, 0};
  ASSERT_EQ(bands.size(), rising.size());
  for (std::size_t i = 0; i < rising.size(); ++i) {
    EXPECT_EQ(bands[i].colour, Rgb(rising[i], falling[i], rising[i])) << i;
  }
}

TEST(DrawGradient, MakesAndDeletesOneBrushForEachBand) {
  FakeGdi32 gdi;
  DrawGradient(kDevice, 3000, 83, Rgb(10, 0, 0), Rgb(10, 0, 0), 1, gdi);
  EXPECT_EQ(gdi.calls,
            (CallLog{"CreateSolidBrush(10)", "FillRect(77, 0 0 198 3, 1)", "DeleteObject(1)",
                     "CreateSolidBrush(10)", "FillRect(77, 0 1 198 4, 2)", "DeleteObject(2)"}));
  EXPECT_EQ(gdi.living_brushes, 0);
}

TEST(DrawGradient, NeverLooksAtTheResultsOfTheCalls) {
  FakeGdi32 clean;
  DrawGradient(kDevice, 3000, 300, kBlack, kWhite, 0, clean);
  for (int n = 1;; ++n) {
    FakeGdi32 gdi{FaultPlan(n)};
    DrawGradient(kDevice, 3000, 300, kBlack, kWhite, 0, gdi);
    if (n > static_cast<int>(clean.calls.size())) break;
    ASSERT_EQ(gdi.calls.size(), clean.calls.size()) << n;
    // A brush that could not be deleted is the only thing left behind.
    EXPECT_EQ(gdi.living_brushes,
              clean.calls[static_cast<std::size_t>(n - 1)].starts_with("Delete"));
  }
  FakeGdi32 nothing_works{FaultPlan(1, FaultPlan::Lasts::kForGood)};
  DrawGradient(kDevice, 3000, 300, kBlack, kWhite, 0, nothing_works);
  EXPECT_EQ(nothing_works.calls.size(), clean.calls.size());
  EXPECT_EQ(nothing_works.calls[1].substr(nothing_works.calls[1].size() - 3), " 0)");
}

TEST(DrawGradient, DropsTheStepsThatOverflowAndGoesOn) {
  // The end's blue minus the start's exceeds 16 bits, so blue stands still; red goes its way.
  const Colour start = std::numeric_limits<std::int32_t>::min();  // blue -32768
  const Colour end = 255 + 65536 * 32767;
  const auto bands = Bands(3000, 3000, start, end, 1);
  ASSERT_EQ(bands.size(), 196U);
  EXPECT_EQ(bands.back().colour, start + 254);
}

}  // namespace
}  // namespace quorvane::testing
