#include "control/resources/image.h"

#include <istream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>

namespace quorvane::resources {
namespace {

using typelib::Bytes;

constexpr std::uint32_t kInfoHeaderSize = 40;

void Demand(bool condition, const char* otherwise) {
  if (!condition) throw std::runtime_error(otherwise);
}

Image::Colour ParseColour(const std::string& text) {
  if (text == "transparent") return std::nullopt;
  Demand(text.size() == 6 && text.find_first_not_of("0123456789ABCDEF") == std::string::npos,
         "a colour is six digits 0-9 and A-F, or transparent");
  return static_cast<std::uint32_t>(std::stoul(text, nullptr, 16));
}

void ReadRows(std::istream& text, const std::map<char, std::uint8_t>& letters, Image& image) {
  std::string row;
  for (std::uint32_t y = 0; y < image.height; ++y) {
    Demand(std::getline(text, row) && row.size() == image.width, "a row has the wrong length");
    for (char letter : row) {
      const auto found = letters.find(letter);
      Demand(found != letters.end(), "a pixel has no colour");
      image.pixels.push_back(found->second);
    }
  }
  Demand(!std::getline(text, row), "there is text behind the last row");
}

// BITMAPINFOHEADER. All counts that a reader can derive are left 0.
void PutInfoHeader(Bytes& file, std::uint32_t width, std::uint32_t height, std::uint32_t bits) {
  file.Put32({kInfoHeaderSize, width, height});
  file.Put16(1);  // planes
  file.Put16(bits);
  file.Put32({0, 0, 0, 0, 0, 0});
}

void PutBgr(Bytes& file, std::uint32_t colour) {
  for (int shift : {0, 8, 16}) file.Put8((colour >> shift) & 0xFF);
}

}  // namespace

Image ReadImage(std::istream& text) {
  Image image;
  std::map<char, std::uint8_t> letters;
  std::string line;
  while (std::getline(text, line)) {
    std::istringstream words(line.substr(0, line.find('#')));
    std::string keyword;
    std::string colour;
    char letter = 0;
    if (!(words >> keyword)) continue;
    if (keyword == "size") {
      Demand(bool(words >> image.width >> image.height), "the size is two numbers");
    } else if (keyword == "colour") {
      Demand(bool(words >> letter >> colour), "a colour line is a letter and a colour");
      Demand(letters.emplace(letter, static_cast<std::uint8_t>(image.palette.size())).second,
             "a letter has two colours");
      image.palette.push_back(ParseColour(colour));
    } else {
      Demand(keyword == "pixels", "a line begins with size, colour or pixels");
      ReadRows(text, letters, image);
      return image;
    }
  }
  throw std::runtime_error("there are no pixels");
}

Bytes BitmapFile(const Image& image) {
  constexpr std::uint32_t kFileHeaderSize = 14;
  Bytes pixels;
  for (std::uint32_t y = image.height; y-- > 0;) {  // rows are stored from the bottom
    for (std::uint32_t x = 0; x < image.width; ++x) {
      const Image::Colour colour = image.palette[image.PixelAt(x, y)];
      Demand(colour.has_value(), "a bitmap has no transparent pixels");
      PutBgr(pixels, *colour);
    }
    pixels.Align('\0');
  }
  Bytes file;
  file.PutText("BM");
  file.Put32(
      {kFileHeaderSize + kInfoHeaderSize + pixels.Size(), 0, kFileHeaderSize + kInfoHeaderSize});
  PutInfoHeader(file, image.width, image.height, 24);
  file.Append(pixels);
  return file;
}

Bytes IconFile(const Image& image) {
  constexpr std::uint32_t kDirectorySize = 6 + 16;
  Demand(image.palette.size() <= 16, "the icon has more than 16 colours");
  Demand(image.width % 32 == 0, "the rows of the icon's mask would need padding");

  Bytes bits;
  PutInfoHeader(bits, image.width, 2 * image.height, 4);  // colours and mask: twice the height
  for (std::size_t i = 0; i < 16; ++i) {
    PutBgr(bits, i < image.palette.size() ? image.palette[i].value_or(0) : 0);
    bits.Put8(0);
  }
  for (std::uint32_t y = image.height; y-- > 0;) {
    for (std::uint32_t x = 0; x < image.width; x += 2) {
      bits.Put8((std::uint32_t{image.PixelAt(x, y)} << 4) | image.PixelAt(x + 1, y));
    }
  }
  for (std::uint32_t y = image.height; y-- > 0;) {
    for (std::uint32_t x = 0; x < image.width; x += 8) {
      std::uint32_t mask = 0;
      for (std::uint32_t bit = 0; bit < 8; ++bit) {
        const bool is_transparent = !image.palette[image.PixelAt(x + bit, y)];
        mask = (mask << 1) | (is_transparent ? 1 : 0);
      }
      bits.Put8(mask);
    }
  }

  Bytes file;
  file.Put16(0);
  file.Put16(1);  // an icon, not a pointer
  file.Put16(1);  // with one image
  for (std::uint32_t value : {image.width, image.height, 16U, 0U}) file.Put8(value);
  file.Put16(1);  // planes
  file.Put16(4);  // bits a pixel
  file.Put32({bits.Size(), kDirectorySize});
  file.Append(bits);
  return file;
}

}  // namespace quorvane::resources
