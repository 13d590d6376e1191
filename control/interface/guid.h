// A 128-bit id in the memory form of the component model, without that model's headers, so that the
// build tools and the tests on any system can use the one list of ids in identities.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quorvane::identities {

/// The same 16 bytes as the platform's GUID on a little-endian machine.
struct Guid {
  std::uint32_t data1;
  std::uint16_t data2;
  std::uint16_t data3;
  std::uint8_t data4[8];  // NOLINT(*-avoid-c-arrays): the layout is the platform's

  friend constexpr bool operator==(const Guid&, const Guid&) = default;
};
static_assert(sizeof(Guid) == 16);

namespace details {

constexpr std::uint32_t HexDigit(char digit) {
  if (digit >= '0' && digit <= '9') return static_cast<std::uint32_t>(digit - '0');
  if (digit >= 'A' && digit <= 'F') return static_cast<std::uint32_t>(digit - 'A' + 10);
  throw "an id consists of the digits 0-9 and A-F";
}

constexpr std::uint32_t HexNumber(std::string_view text, std::size_t start, std::size_t digits) {
  std::uint32_t number = 0;
  for (char digit : text.substr(start, digits)) number = number * 16 + HexDigit(digit);
  return number;
}

}  // namespace details

/// The id of a text such as "00020430-0000-0000-C000-000000000046": capitals, no braces. Runs in
/// the compiler only, which refuses any other form.
consteval Guid ParseGuid(std::string_view text) {
  using details::HexNumber;
  if (text.size() != 36) throw "an id has 36 characters";
  for (std::size_t dash : {8U, 13U, 18U, 23U}) {
    if (text[dash] != '-') throw "an id has dashes behind 8, 12, 16 and 20 digits";
  }
  Guid guid{HexNumber(text, 0, 8),
            static_cast<std::uint16_t>(HexNumber(text, 9, 4)),
            static_cast<std::uint16_t>(HexNumber(text, 14, 4)),
            {}};
  guid.data4[0] = static_cast<std::uint8_t>(HexNumber(text, 19, 2));
  guid.data4[1] = static_cast<std::uint8_t>(HexNumber(text, 21, 2));
  for (std::size_t i = 0; i < 6; ++i) {
    guid.data4[2 + i] = static_cast<std::uint8_t>(HexNumber(text, 24 + 2 * i, 2));
  }
  return guid;
}

}  // namespace quorvane::identities
