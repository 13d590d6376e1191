#pragma once

#include <string>
#include <string_view>

namespace quorvane {

/// An 8-bit code page, single- or multi-byte. The system's own comes from platform/locale.h.
class CodePage {
 public:
  virtual ~CodePage() = default;

  /// The 8-bit form. A character that the page cannot hold becomes the page's replacement, the
  /// question mark (or, where the platform does so, a similar character). Zeros pass through.
  [[nodiscard]] virtual std::string ToBytes(std::u16string_view characters) const = 0;
  /// The 16-bit form; the inverse of ToBytes() where there is one. Zeros pass through.
  [[nodiscard]] virtual std::u16string FromBytes(std::string_view bytes) const = 0;
};

}  // namespace quorvane
