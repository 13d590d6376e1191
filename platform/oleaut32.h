#pragma once

#include <cstdint>
#include <string>

namespace quorvane {

/// Calls of the system's automation library that turn texts into values and numbers into texts,
/// under their own names; results are handed back raw: 0 for success, a negative code for a
/// failure, which writes nothing.
///
/// Texts end with a zero. The locale says which signs stand for a decimal point, for groups of
/// digits and for money. Fractions are rounded to the nearest integer, ties to even. How the caller
/// has set the processor's floating-point unit changes no result, and is the same afterwards.
class Oleaut32 {
 public:
  static constexpr std::uint32_t kEnglishUnitedStates = 0x409;  ///< a locale
  static constexpr std::uint32_t kNoUserOverride = 0x80000000;  ///< the locale as it is delivered

  static constexpr auto kTypeMismatch =
      static_cast<std::int32_t>(0x80020005);  ///< the text is no number
  static constexpr auto kOverflow = static_cast<std::int32_t>(0x8002000A);  ///< out of range
  static constexpr auto kOutOfMemory =
      static_cast<std::int32_t>(0x8007000E);  ///< memory is exhausted

  virtual ~Oleaut32() = default;

  /// Reads a whole number of 16 or 32 bits: digits with groups, fraction and exponent, a sign in
  /// front or behind, parentheses for a negative one, a currency sign, white space around each; or
  /// "&H" with hexadecimal or "&O" with octal digits, a bit pattern of that many bits.
  [[nodiscard]] virtual std::int32_t VarI2FromStr(const char16_t* text, std::uint32_t locale,
                                                  std::uint32_t flags, std::int16_t* value) = 0;
  /// Likewise.
  [[nodiscard]] virtual std::int32_t VarI4FromStr(const char16_t* text, std::uint32_t locale,
                                                  std::uint32_t flags, std::int32_t* value) = 0;
  /// -1 for "True" in any case and "#TRUE#", 0 for "False" in any case and "#FALSE#"; else the text
  /// is a number, and the value whether that is unlike 0: -1 or 0.
  [[nodiscard]] virtual std::int32_t VarBoolFromStr(const char16_t* text, std::uint32_t locale,
                                                    std::uint32_t flags, std::int16_t* value) = 0;
  /// The number in up to 15 significant digits: "1E+20" from 1E15 on, "1.2E-15" below 0.0001 where
  /// it would need more than 15 places behind the point. (Wine 8 writes all below 0.0001 so.)
  [[nodiscard]] virtual std::int32_t VarBstrFromR8(double value, std::uint32_t locale,
                                                   std::uint32_t flags, std::u16string* text) = 0;
};

/// The system's automation library.
[[nodiscard]] Oleaut32& oleaut32() noexcept;

}  // namespace quorvane
