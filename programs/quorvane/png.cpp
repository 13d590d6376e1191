#include "programs/quorvane/png.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "checksum/cCRC32.h"
#include "runtime/byte_array.h"

namespace quorvane::programs {
namespace {

// A chunk's bytes go through the house's own CRC, which takes 32767 at most.
constexpr std::size_t kLargestChunk = 16384;
// A stored block of the deflate format holds no more.
constexpr std::size_t kLargestBlock = 65535;

std::string BigEndian(std::uint32_t value) {
  std::string bytes;
  for (const int shift : {24, 16, 8, 0}) bytes += static_cast<char>((value >> shift) & 0xFF);
  return bytes;
}

std::string LittleEndian16(std::size_t value) {
  return {static_cast<char>(value & 0xFF), static_cast<char>((value >> 8) & 0xFF)};
}

std::uint32_t Crc(std::string_view bytes) {
  ByteArray array(0, static_cast<std::int32_t>(bytes.size()) - 1);
  std::ranges::transform(bytes, array.Elements().begin(),
                         [](char c) { return static_cast<std::uint8_t>(c); });
  return static_cast<std::uint32_t>(cCRC32().GetByteArrayCrc32(array));
}

std::string Chunk(std::string_view type, std::string_view data) {
  const std::string body = std::string(type).append(data);
  return BigEndian(static_cast<std::uint32_t>(data.size())) + body + BigEndian(Crc(body));
}

// RFC 1950, section 9.
std::uint32_t Adler32(std::string_view bytes) {
  std::uint32_t low = 1;
  std::uint32_t high = 0;
  for (const char c : bytes) {
    low = (low + static_cast<std::uint8_t>(c)) % 65521;
    high = (high + low) % 65521;
  }
  return (high << 16) | low;
}

// RFC 1950 around stored blocks of RFC 1951, section 3.2.4. `bytes` must not be empty.
std::string Stored(std::string_view bytes) {
  std::string stream = "\x78\x01";
  for (std::size_t start = 0; start < bytes.size(); start += kLargestBlock) {
    const std::string_view block = bytes.substr(start, kLargestBlock);
    const bool is_last = start + block.size() == bytes.size();
    stream += is_last ? '\1' : '\0';
    stream += LittleEndian16(block.size()) + LittleEndian16(~block.size());
    stream.append(block);
  }
  return stream + BigEndian(Adler32(bytes));
}

// Each row starts with the number of its filter: none.
std::string Rows(Picture& picture) {
  std::string rows;
  for (std::int32_t y = 0; y < picture.PixelHeight(); ++y) {
    rows += '\0';
    for (std::int32_t x = 0; x < picture.PixelWidth(); ++x) {
      const Colour colour = picture.PixelAt(x, y);
      for (const int shift : {0, 8, 16}) rows += static_cast<char>((colour >> shift) & 0xFF);
    }
  }
  return rows;
}

}  // namespace

std::string PngOf(Picture& picture) {
  constexpr std::string_view kEightBitsTrueColour("\x08\x02\x00\x00\x00", 5);
  std::string file = "\x89PNG\r\n\x1A\n";
  file += Chunk("IHDR", BigEndian(static_cast<std::uint32_t>(picture.PixelWidth())) +
                            BigEndian(static_cast<std::uint32_t>(picture.PixelHeight())) +
                            std::string(kEightBitsTrueColour));
  const std::string pixels = Stored(Rows(picture));
  for (std::size_t start = 0; start < pixels.size(); start += kLargestChunk) {
    file += Chunk("IDAT", std::string_view(pixels).substr(start, kLargestChunk));
  }
  return file + Chunk("IEND", "");
}

}  // namespace quorvane::programs
