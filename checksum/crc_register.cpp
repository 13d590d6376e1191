#include "checksum/crc_register.h"

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
// of n bytes, the same line is applied once for each further one. The product with x^(8n), which is
// fixed where n is, is linear in the register, too: it is the XOR of the products of its eight
// digits of 4 bits, and those stand in a table of 8 times 16.
//
// Within a stream the bytes are taken four at a time. A step moves the upper 24 bits of the
// register down untouched and XORs the table's entry onto them, and XOR has no order; so the next
// three bytes may be XORed into those bits ahead of their steps, all four at once.
//
// The order of the steps is chosen for a processor that looks ahead a limited way: a step must not
// wait long for the one before, or the steps that wait fill the room in which it looks for others.
// So streams take turns after each step, as many as there are processor registers for. Where those
// do not hold all (in 32 bits), three streams take two steps in turn, and then their registers wait
// in memory for the others: volatile, as the compiler would else move single ones at every step.

namespace quorvane {
namespace {

constexpr std::uint32_t kPolynomial = 0xEDB88320;
constexpr std::uint32_t kOne = 0x80000000;  // x^0
constexpr std::uint32_t kX = 0x40000000;    // x^1

constexpr std::size_t kWordSize = 4;
// Measured: fewer streams leave the processor waiting, more find no registers.
constexpr std::size_t kStreams = 12;
// How many streams take turns, and how many steps each before their registers go to memory.
constexpr bool kHas64Bits = sizeof(void*) == 8;
constexpr std::size_t kInTurn = kHas64Bits ? kStreams : 3;
constexpr std::size_t kSteps = kHas64Bits ? kWordSize : 2;
// The lengths of a stream. They are fixed, so that the address of each stream's bytes is that of
// the first one's and a constant. The long one is for the blocks of a file, 8192 bytes.
constexpr std::size_t kLong = 8192 / kStreams / kWordSize * kWordSize;
constexpr std::size_t kShort = 40;

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

// The products of a factor with each value of each digit of a register, its lowest digit first.
constexpr std::uint32_t kDigitBits = 4;
using Products = std::array<std::array<std::uint32_t, 1U << kDigitBits>, 32 / kDigitBits>;

constexpr Products ProductsOf(std::uint32_t factor) {
  Products products{};
  for (std::uint32_t digit = 0; digit < products.size(); ++digit)
    for (std::uint32_t value = 0; value < products[digit].size(); ++value)
      products[digit][value] = Multiply(value << (kDigitBits * digit), factor);
  return products;
}

// What a register is multiplied by when a stream of this many bytes follows it.
template <std::size_t stream_length>
constexpr Products kJoining = ProductsOf(PowerOfX(8 * stream_length));

// The register after a stream, by the one before it and by what the stream makes of 0.
std::uint32_t Join(const Products& joining, std::uint32_t before, std::uint32_t after) {
  for (const auto& products_of_digit : joining) {
    after ^= products_of_digit[before % products_of_digit.size()];
    before >>= kDigitBits;
  }
  return after;
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

// kInTurn streams by kSteps bytes each, of which the first is one of a word's four.
template <std::size_t stream_length>
void AdvanceInTurn(const CrcTable& table, volatile std::uint32_t* registers,
                   const std::uint8_t* bytes, std::size_t first_step) {
  std::array<std::uint32_t, kInTurn> crcs;  // NOLINT(cppcoreguidelines-pro-type-member-init)
#pragma GCC unroll 12
  for (std::size_t s = 0; s < kInTurn; ++s) {
    crcs[s] = registers[s];
    if (first_step == 0) crcs[s] ^= Word(bytes + s * stream_length);
  }
#pragma GCC unroll 4
  for (std::size_t step = 0; step < kSteps; ++step) {
#pragma GCC unroll 12
    for (std::size_t s = 0; s < kInTurn; ++s) crcs[s] = Step(table, crcs[s]);
  }
#pragma GCC unroll 12
  for (std::size_t s = 0; s < kInTurn; ++s) registers[s] = crcs[s];
}

template <std::size_t stream_length>
std::uint32_t AdvanceInStreams(const CrcTable& table, std::uint32_t crc,
                               const std::uint8_t* bytes) {
  static_assert(stream_length % kWordSize == 0);
  // Set one by one: what the compiler writes for {} takes as long as 50 bytes do.
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init)
  std::array<volatile std::uint32_t, kStreams> registers;
#pragma GCC unroll 12
  for (std::size_t s = 0; s < kStreams; ++s) registers[s] = s == 0 ? crc : 0;
  for (const std::uint8_t* const end = bytes + stream_length; bytes != end; bytes += kWordSize) {
#pragma GCC unroll 2
    for (std::size_t step = 0; step < kWordSize; step += kSteps) {
#pragma GCC unroll 4
      for (std::size_t s = 0; s < kStreams; s += kInTurn)
        AdvanceInTurn<stream_length>(table, &registers[s], bytes + s * stream_length, step);
    }
  }
  crc = registers[0];
  for (std::size_t s = 1; s < kStreams; ++s) crc = Join(kJoining<stream_length>, crc, registers[s]);
  return crc;
}

// Takes as many bytes as streams of that length need, as often as there are so many; gives what is
// left.
template <std::size_t stream_length>
std::span<const std::uint8_t> AdvanceWhileStreams(const CrcTable& table, std::uint32_t& crc,
                                                  std::span<const std::uint8_t> bytes) {
  constexpr std::size_t kTogether = kStreams * stream_length;
  for (; bytes.size() >= kTogether; bytes = bytes.subspan(kTogether))
    crc = AdvanceInStreams<stream_length>(table, crc, bytes.data());
  return bytes;
}

std::uint32_t AdvanceByBytes(const CrcTable& table, std::uint32_t crc,
                             std::span<const std::uint8_t> bytes) {
  for (; bytes.size() >= kWordSize; bytes = bytes.subspan(kWordSize))
    crc = AdvanceByWord(table, crc, bytes.data());
  for (const std::uint8_t byte : bytes) crc = Step(table, crc ^ byte);
  return crc;
}

// Apart, so that a short array does not wait for what the streams need.
[[gnu::noinline]] std::uint32_t AdvanceLong(const CrcTable& table, std::uint32_t crc,
                                            std::span<const std::uint8_t> bytes) {
  bytes = AdvanceWhileStreams<kLong>(table, crc, bytes);
  bytes = AdvanceWhileStreams<kShort>(table, crc, bytes);
  return AdvanceByBytes(table, crc, bytes);
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
  return bytes.size() < kStreams * kShort ? AdvanceByBytes(table, crc, bytes)
                                          : AdvanceLong(table, crc, bytes);
}

}  // namespace quorvane
