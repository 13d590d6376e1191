#pragma once

#include <cstdint>

namespace quorvane {

/// The screen that the user looks at.
class Screen {
 public:
  static constexpr std::int16_t kDefaultPointer = 0;  ///< the shape that each window chooses
  static constexpr std::int16_t kHourglass = 11;      ///< the shape of a busy program

  virtual ~Screen() = default;

  /// Gives the mouse pointer a numbered shape. Raises invalid procedure call (5) for a number other
  /// than the two above.
  virtual void SetMousePointer(std::int16_t shape) = 0;
};

/// The platform's own, on Linux its stand-in. It lives as long as the program.
[[nodiscard]] Screen& screen() noexcept;

}  // namespace quorvane
