#include "control/resources/picture.h"

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

Picture::Colour ParseColour(const std::string& text) {
  if (text == "transparent") return std::nullopt;
  Demand(text.size() == 6 && text.find_first_not_of("0123456789ABCDEF") == std::string::npos,
         "a colour is six digits 0-9 and A-F, or transparent");
  return static_cast<std::uint32_t>(std::stoul(text, nullptr, 16));
}

void ReadRows(std::istream& text, const std::map<char, std::uint8_t>& letters, Picture& picture) {
  std::string row;
  for (std::uint32_t y = 0; y < picture.height; ++y) {
    Demand(std::getline(text, row) && row.size() == picture.width, "a row has the wrong length");
    for (char letter : row) {
      const auto found = letters.find(letter);
      Demand(found != letters.end(), "a pixel has no colour");
      picture.pixels.push_back(found->second);
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

Picture ReadPicture(std::istream& text) {
  Picture picture;
  std::map<char, std::uint8_t> letters;
  std::string line;
  while (std::getline(text, line)) {
    std::istringstream words(line.substr(0, line.find('#')));
    std::string keyword;
    std::string colour;
    char letter = 0;
    if (!(words >> keyword)) continue;
    if (keyword == "size") {
      Demand(bool(words >> picture.width >> picture.height), "the size is two numbers");
    } else if (keyword == "colour") {
      Demand(bool(words >> letter >> colour), "a colour line is a letter and a colour");
      Demand(letters.emplace(letter, static_cast<std::uint8_t>(picture.palette.size())).second,
             "a letter has two colours");
      picture.palette.push_back(ParseColour(colour));
    } else {
      Demand(keyword == "pixels", "a line begins with size, colour or pixels");
      ReadRows(text, letters, picture);
      return picture;
    }
  }
  throw std::runtime_error("there are no pixels");
}

Bytes BitmapFile(const Picture& picture) {
  constexpr std::uint32_t kFileHeaderSize = 14;
  Bytes pixels;
  for (std::uint32_t y = picture.height; y-- > 0;) {  // rows are stored from the bottom
    for (std::uint32_t x = 0; x < picture.width; ++x) {
      const Picture::Colour colour = picture.palette[picture.PixelAt(x, y)];
      Demand(colour.has_value(), "a bitmap has no transparent pixels");
      PutBgr(pixels, *colour);
    }
    pixels.Align('\0');
  }
  Bytes file;
  file.PutText("BM");
  file.Put32(
      {kFileHeaderSize + kInfoHeaderSize + pixels.size(), 0, kFileHeaderSize + kInfoHeaderSize});
  PutInfoHeader(file, picture.width, picture.height, 24);
  file.Append(pixels);
  return file;
}

Bytes IconFile(const Picture& picture) {
  constexpr std::uint32_t kDirectorySize = 6 + 16;
  Demand(picture.palette.size() <= 16, "the icon has more than 16 colours");
  Demand(picture.width % 32 == 0, "the rows of the icon's mask would need padding");

  Bytes image;
  PutInfoHeader(image, picture.width, 2 * picture.height, 4);  // colours and mask: twice the height
  for (std::size_t i = 0; i < 16; ++i) {
    PutBgr(image, i < picture.palette.size() ? picture.palette[i].value_or(0) : 0);
    image.Put8(0);
  }
  for (std::uint32_t y = picture.height; y-- > 0;) {
    for (std::uint32_t x = 0; x < picture.width; x += 2) {
      image.Put8((std::uint32_t{picture.PixelAt(x, y)} << 4) | picture.PixelAt(x + 1, y));
    }
  }
  for (std::uint32_t y = picture.height; y-- > 0;) {
    for (std::uint32_t x = 0; x < picture.width; x += 8) {
      std::uint32_t mask = 0;
      for (std::uint32_t bit = 0; bit < 8; ++bit) {
        const bool is_transparent = !picture.palette[picture.PixelAt(x + bit, y)];
        mask = (mask << 1) | (is_transparent ? 1 : 0);
      }
      image.Put8(mask);
    }
  }

  Bytes file;
  file.Put16(0);
  file.Put16(1);  // an icon, not a pointer
  file.Put16(1);  // with one image
  for (std::uint32_t value : {picture.width, picture.height, 16U, 0U}) file.Put8(value);
  file.Put16(1);  // planes
  file.Put16(4);  // bits a pixel
  file.Put32({image.size(), kDirectorySize});
  file.Append(image);
  return file;
}

}  // namespace quorvane::resources
