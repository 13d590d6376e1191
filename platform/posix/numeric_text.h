#pragma once

#include "platform/oleaut32.h"

namespace quorvane {

/// The rules of the automation library for English (United States), worked out by themselves: they
/// call no operating system, so that they can be held against the library where there is one.
///
/// It has that locale alone, as it is delivered: locale and flags are not looked at.
class NumericText final : public Oleaut32 {
 public:
  std::int32_t VarI2FromStr(const char16_t* text, std::uint32_t locale, std::uint32_t flags,
                            std::int16_t* value) override;
  std::int32_t VarI4FromStr(const char16_t* text, std::uint32_t locale, std::uint32_t flags,
                            std::int32_t* value) override;
  std::int32_t VarBoolFromStr(const char16_t* text, std::uint32_t locale, std::uint32_t flags,
                              std::int16_t* value) override;
  std::int32_t VarBstrFromR8(double value, std::uint32_t locale, std::uint32_t flags,
                             std::u16string* text) override;
};

}  // namespace quorvane
