#pragma once

#include <cstdint>

namespace quorvane {

/// A handle of the graphics library: where painting goes; 0 is none.
enum class DeviceContext : std::intptr_t {};
/// A handle of the graphics library: what paints; 0 is none.
enum class Brush : std::intptr_t {};

/// A rectangle in pixels of a surface, laid out as the system's own; Right and Bottom are
/// exclusive.
struct Rect {
  std::int32_t Left = 0;    ///< first column
  std::int32_t Top = 0;     ///< first row
  std::int32_t Right = 0;   ///< behind the last column
  std::int32_t Bottom = 0;  ///< behind the last row
  friend bool operator==(const Rect&, const Rect&) = default;
};

/// A colour: red + 256 x green + 65536 x blue.
using Colour = std::int32_t;

/// Calls of the system's graphics library, under their own names; results are handed back raw.
/// FillRect, which user32 exports, stands with the two that it works with.
class Gdi32 {
 public:
  virtual ~Gdi32() = default;

  /// A new brush, which the caller deletes; none (0) when it cannot be made.
  [[nodiscard]] virtual Brush CreateSolidBrush(Colour colour) = 0;
  /// Fills the part of the rectangle that lies on the surface; 0 when it fails. A rectangle whose
  /// Right lies before its Left holds the columns from Right + 1 to Left; and so with Bottom and
  /// Top.
  virtual std::int32_t FillRect(DeviceContext hDC, const Rect& rectangle, Brush brush) = 0;
  /// 0 when the brush does not exist.
  virtual std::int32_t DeleteObject(Brush brush) = 0;
};

/// The platform's own, on Linux its stand-in. It lives as long as the program.
[[nodiscard]] Gdi32& gdi32() noexcept;

}  // namespace quorvane
