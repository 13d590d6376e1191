// Turns the text images of this folder into the files that a resource compiler takes.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <vector>

#include "control/resources/bytes.h"

namespace quorvane::resources {

struct Image {
  /// Colours are red, green, blue, from the high byte down; none is transparent.
  using Colour = std::optional<std::uint32_t>;

  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::vector<Colour> palette;
  std::vector<std::uint8_t> pixels;  ///< indexes into the palette, rows from the top

  std::uint8_t PixelAt(std::uint32_t x, std::uint32_t y) const { return pixels[y * width + x]; }
};

/// Reads lines of the form
///   size WIDTH HEIGHT
///   colour LETTER RRGGBB|transparent
///   pixels
/// and behind the last of them one line of letters a row. A # begins a comment outside the rows.
/// Throws std::runtime_error when the text is anything else.
Image ReadImage(std::istream& text);

/// A .bmp file with 24 bits a pixel. Throws std::runtime_error on a transparent pixel.
typelib::Bytes BitmapFile(const Image& image);

/// An .ico file with one image of 16 colours. Throws std::runtime_error where there are more, or
/// where the width is no multiple of 32.
typelib::Bytes IconFile(const Image& image);

}  // namespace quorvane::resources
