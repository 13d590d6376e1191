#include "checksum/crc_register.h"

#include <algorithm>
#include <cstddef>

// Why the plain loop is slow, and what is done about it
//
// Each byte step waits for the one before: its table index comes out of the register that the last
// lookup left. That wait, not the work, is what a byte costs. So the bytes are cut into independent
// streams that the processor can work on at the same time, and the streams' registers are joined at
// the end.
//
// The register is a polynomial over the field of two elements, reflected: its top bit is the
// coefficient of x^0, its lowest that of x^31. With all arithmetic modulo
//   P = x^32 + x^26 + x^23 + x^22 + x^16 + x^12 + x^11 + x^10 + x^8 + x^7 + x^5 + x^4 + x^2 + x + 1
// (0xEDB88320 without its x^32) the byte step is
//   step(r, b) = (r + b) * x^8,   b standing in the lowest 8 bits,
// and addition is XOR. That is linear in r and b together. So for the n bytes A and any register r
//   advance(r, A) = advance(0, A) + r * x^(8n),
// and for A followed by the n bytes B
//   advance(r, AB) = advance(advance(r, A), B) = advance(0, B) + advance(r, A) * x^(8n).
// Both advances on the right can run side by side: only the first needs r. With more streams, all
// of n bytes, the same line is applied once for each further one. A join costs one multiplication
// modulo P, 32 shifts and XORs.
//
// Within a stream the bytes are taken four at a time. A step moves the upper 24 bits of the
// register down untouched and XORs the table's entry onto them, and XOR has no order; so the next
// three bytes may be XORed into those bits ahead of their steps, all four at once.

namespace quorvane {
namespace {

constexpr std::uint32_t kPolynomial = 0xEDB88320;
constexpr std::uint32_t kOne = 0x80000000;  // x^0
constexpr std::uint32_t kX = 0x40000000;    // x^1

constexpr std::size_t kWordSize = 4;
// Measured: fewer streams leave the processor waiting, and with more their registers no longer fit
// into its own.
constexpr std::size_t kStreams = 6;
// Shorter pieces are not worth the joins.
constexpr std::size_t kShortest = 512;
// A piece at most; as long as the blocks of a file, whose joining factor is known beforehand.
constexpr std::size_t kLongest = 8192;

constexpr std::uint32_t MaskOf(std::uint32_t bit) { return 0U - bit; }

constexpr std::uint32_t TimesX(std::uint32_t value) {
  return (value >> 1) ^ (kPolynomial & MaskOf(value & 1));
}

constexpr std::uint32_t Multiply(std::uint32_t left, std::uint32_t right) {
  std::uint32_t product = 0;
  for (int power = 0; power < 32; ++power) {
    product ^= right & MaskOf(left >> 31);
    left <<= 1;
    right = TimesX(right);
  }
  return product;
}

constexpr std::uint32_t PowerOfX(std::size_t exponent) {
  std::uint32_t power = kOne;
  for (std::uint32_t square = kX; exponent != 0; exponent >>= 1) {
    if ((exponent & 1) != 0) power = Multiply(power, square);
    square = Multiply(square, square);
  }
  return power;
}

constexpr std::size_t StreamLength(std::size_t piece) {
  return piece / kStreams / kWordSize * kWordSize;
}

// What a register is multiplied by when a stream of this many bytes follows it.
std::uint32_t JoiningFactor(std::size_t stream_length) {
  constexpr std::size_t kUsual = StreamLength(kLongest);
  constexpr std::uint32_t kUsualFactor = PowerOfX(8 * kUsual);
  return stream_length == kUsual ? kUsualFactor : PowerOfX(8 * stream_length);
}

// The byte step, for a register into which the byte was XORed already.
std::uint32_t Step(const CrcTable& table, std::uint32_t crc) {
  return (crc >> 8) ^ static_cast<std::uint32_t>(table[crc & 0xFF]);
}

std::uint32_t Word(const std::uint8_t* bytes) {
  return bytes[0] | std::uint32_t{bytes[1]} << 8 | std::uint32_t{bytes[2]} << 16 |
         std::uint32_t{bytes[3]} << 24;
}

std::uint32_t AdvanceByWord(const CrcTable& table, std::uint32_t crc, const std::uint8_t* bytes) {
  crc ^= Word(bytes);
  return Step(table, Step(table, Step(table, Step(table, crc))));
}

std::uint32_t AdvanceInStreams(const CrcTable& table, std::uint32_t crc, const std::uint8_t* bytes,
                               std::size_t stream_length) {
  std::array<std::uint32_t, kStreams> registers{crc};
  for (std::size_t i = 0; i < stream_length; i += kWordSize) {
#pragma GCC unroll 6
    for (std::size_t s = 0; s < kStreams; ++s)
      registers[s] = AdvanceByWord(table, registers[s], bytes + s * stream_length + i);
  }
  const std::uint32_t factor = JoiningFactor(stream_length);
  crc = registers[0];
  for (std::size_t s = 1; s < kStreams; ++s) crc = Multiply(crc, factor) ^ registers[s];
  return crc;
}

}  // namespace

CrcTable BuildCrcTable() {
  CrcTable table{};
  for (std::uint32_t index = 0; index < 256; ++index) {
    std::uint32_t value = index;
    for (int bit = 0; bit < 8; ++bit) value = TimesX(value);
    table[index] = static_cast<std::int32_t>(value);
  }
  return table;
}

std::uint32_t AdvanceCrc(const CrcTable& table, std::uint32_t crc,
                         std::span<const std::uint8_t> bytes) {
  while (bytes.size() >= kShortest) {
    const std::size_t stream_length = StreamLength(std::min(bytes.size(), kLongest));
    crc = AdvanceInStreams(table, crc, bytes.data(), stream_length);
    bytes = bytes.subspan(kStreams * stream_length);
  }
  for (const std::uint8_t byte : bytes) crc = Step(table, crc ^ byte);
  return crc;
}

}  // namespace quorvane
