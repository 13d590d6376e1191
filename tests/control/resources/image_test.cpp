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
           "",                                              // nothing
           "size 1 1\ncolour x 000000\n",                   // no pixels
           "size 1\n",                                      // half a size
           "size 1 1\ncolour x\n",                          // no colour
           "size 1 1\ncolour x 00000G\n",                   // no digit
           "size 1 1\ncolour x 0000000\n",                  // a digit too many
           "size 1 1\ncolour x 000000\ncolour x 111111\n",  // two colours
           "size 1 1\nbackground x\n",                      // an unknown word
           "size 1 1\ncolour x 000000\npixels\ny\n",        // a pixel without colour
           "size 2 1\ncolour x 000000\npixels\nx\n",        // a short row
           "size 1 1\ncolour x 000000\npixels\nxx\n",       // a long row
           "size 1 2\ncolour x 000000\npixels\nx\n",        // a row too few
           "size 1 1\ncolour x 000000\npixels\nx\nx\n",     // a row too many
       }) {
    EXPECT_THROW(Read(text), std::runtime_error) << text;
  }
}

TEST(BitmapFile, StoresRowsFromTheBottomAndFillsThemUp) {
  const auto file = BitmapFile(Read("size 1 2\ncolour a 010203\ncolour b 040506\npixels\na\nb\n"));
  const std::vector<std::uint8_t> rows(file.Data().begin() + 54, file.Data().end());
  EXPECT_EQ(rows, (std::vector<std::uint8_t>{6, 5, 4, 0, 3, 2, 1, 0}));
}

TEST(BitmapFile, RefusesTransparentPixels) {
  EXPECT_THROW(BitmapFile(Read(kTwoByTwo)), std::runtime_error);
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
