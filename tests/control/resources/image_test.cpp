// Proves the reading of text images: each rule of the format, and that an image that breaks one
// is refused instead of ending up crooked in the module.
#include "control/resources/image.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>
#include <string>

namespace quorvane::resources {
namespace {

Image Read(const std::string& text) {
  std::istringstream stream(text);
  return ReadImage(stream);
}

constexpr char kTwoByTwo[] =
    "# a comment\n"
    "\n"
    "size 2 2\n"
    "colour . transparent\n"
    "colour x 102030  # another\n"
    "pixels\n"
    ".x\n"
    "xx\n";

TEST(ReadImage, ReadsSizeColoursAndRows) {
  const Image image = Read(kTwoByTwo);
  EXPECT_EQ(image.width, 2U);
  EXPECT_EQ(image.height, 2U);
  EXPECT_EQ(image.palette, (std::vector<Image::Colour>{std::nullopt, 0x102030}));
  EXPECT_EQ(image.pixels, (std::vector<std::uint8_t>{0, 1, 1, 1}));
}

TEST(ReadImage, RefusesWhatIsNoImage) {
  for (const char* text : {
           "",                                                         // nothing
           "size 1 1\ncolour x 000000\n",                              // no pixels
           "size 1\npixels\n",                                         // half a size
           "size 1 1\ncolour x\npixels\nx\n",                          // no colour
           "size 1 1\ncolour x 00000G\npixels\nx\n",                   // no digit
           "size 1 1\ncolour x 0000000\npixels\nx\n",                  // a digit too many
           "size 1 1\ncolour x 000000\ncolour x 111111\npixels\nx\n",  // two colours
           "size 1 1\ncolour x 000000\npicture\nx\n",                  // an unknown word
           "size 1 1\ncolour x 000000\npixels\ny\n",                   // a pixel without colour
           "size 2 1\ncolour x 000000\npixels\nx\n",                   // a short row
           "size 1 1\ncolour x 000000\npixels\nxx\n",                  // a long row
           "size 1 2\ncolour x 000000\npixels\nx\n",                   // a row too few
           "size 1 1\ncolour x 000000\npixels\nx\nx\n",                // a row too many
       }) {
    EXPECT_THROW(Read(text), std::runtime_error) << text;
  }
}

TEST(BitmapFile, StoresRowsFromTheBottomAndFillsThemUp) {
  const auto file = BitmapFile(Read("size 1 2\ncolour a 010203\ncolour b 040506\npixels\na\nb\n"));
  const std::vector<std::uint8_t> rows(file.Data().begin() + 54, file.Data().end());
  EXPECT_EQ(rows, (std::vector<std::uint8_t>{6, 5, 4, 0, 3, 2, 1, 0}));
}

// The bytes of a file from one place on, as numbers of 32 bits.
std::vector<std::uint32_t> Numbers(const typelib::Bytes& file, std::size_t start,
                                   std::size_t count) {
  std::vector<std::uint32_t> numbers;
  for (std::size_t at = start; at < start + 4 * count; at += 4) {
    const auto byte = [&](std::size_t i) { return std::uint32_t{file.Data().at(at + i)} << 8 * i; };
    numbers.push_back(byte(0) | byte(1) | byte(2) | byte(3));
  }
  return numbers;
}

TEST(BitmapFile, BeginsWithItsSizeAndThoseOfThePicture) {
  const auto file = BitmapFile(Read("size 3 2\ncolour a 010203\npixels\naaa\naaa\n"));
  ASSERT_EQ(file.Size(), 54U + 2 * 12);
  EXPECT_EQ(std::string(file.Data().begin(), file.Data().begin() + 2), "BM");
  EXPECT_EQ(Numbers(file, 2, 3), (std::vector<std::uint32_t>{54 + 2 * 12, 0, 54}));
  EXPECT_EQ(Numbers(file, 14, 10),
            (std::vector<std::uint32_t>{40, 3, 2, 1 | 24U << 16, 0, 0, 0, 0, 0, 0}));
}

TEST(BitmapFile, RefusesTransparentPixels) {
  EXPECT_THROW(BitmapFile(Read(kTwoByTwo)), std::runtime_error);
}

// Two pixels of colour a byte, then a mask of a bit each.
TEST(IconFile, HoldsColoursAndMaskFromTheBottom) {
  const std::string blank(30, '.');
  const auto file =
      IconFile(Read("size 32 2\ncolour . transparent\ncolour x 102030\ncolour y 405060\n"
                    "pixels\nxy" +
                    blank + "\n" + blank + "yx\n"));
  ASSERT_EQ(file.Size(), 22U + 40 + 64 + 2 * 16 + 2 * 4);
  EXPECT_EQ(Numbers(file, 0, 5),
            (std::vector<std::uint32_t>{1U << 16, 1 | 32U << 16 | 2U << 24, 16 | 1U << 16,
                                        4 | 144U << 16, 22U << 16}));
  EXPECT_EQ(Numbers(file, 22, 10),
            (std::vector<std::uint32_t>{40, 32, 4, 1 | 4U << 16, 0, 0, 0, 0, 0, 0}));
  std::vector<std::uint32_t> palette(16);
  palette[1] = 0x102030;
  palette[2] = 0x405060;
  EXPECT_EQ(Numbers(file, 62, 16), palette);
  EXPECT_EQ(Numbers(file, 126, 10), (std::vector<std::uint32_t>{0, 0, 0, 0x21U << 24, 0x12, 0, 0, 0,
                                                                0xFCFFFFFF, 0xFFFFFF3F}));
}

TEST(IconFile, TakesSixteenColours) {
  std::string text = "size 32 1\n";
  for (char letter = 'a'; letter < 'a' + 16; ++letter)
    text += std::string("colour ") + letter + " 0000FF\n";
  const auto file = IconFile(Read(text + "pixels\n" + std::string(32, 'p') + "\n"));
  EXPECT_EQ(Numbers(file, 62, 16), std::vector<std::uint32_t>(16, 0xFF));
  EXPECT_EQ(Numbers(file, 126, 1), std::vector<std::uint32_t>{0xFFFFFFFF});
}

TEST(IconFile, RefusesMoreThanSixteenColours) {
  std::string text = "size 32 1\n";
  for (char letter = 'a'; letter < 'a' + 17; ++letter)
    text += std::string("colour ") + letter + " 000000\n";
  EXPECT_THROW(IconFile(Read(text + "pixels\n" + std::string(32, 'a') + "\n")), std::runtime_error);
}

TEST(IconFile, RefusesAWidthThatNeedsFilling) {
  EXPECT_THROW(IconFile(Read(kTwoByTwo)), std::runtime_error);
}

}  // namespace
}  // namespace quorvane::resources
