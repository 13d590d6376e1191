#pragma once

#include "platform/windows/os_headers.h"

namespace quorvane::programs {

/// How the system wants windows to look: its font for messages, which has the density of the screen
/// in it, and what is measured by it.
class Look {
 public:
  Look();
  Look(const Look&) = delete;
  Look& operator=(const Look&) = delete;
  ~Look();

  /// Asks the system anew, when it says that its settings have changed. The old font goes: whoever
  /// shows it takes the new one first, see Apply().
  void Apply(HWND window);

  [[nodiscard]] HFONT Font() const { return font_; }
  /// In pixels: the height of a line of text, of a field for one, and the room between things.
  [[nodiscard]] int Line() const { return line_; }
  [[nodiscard]] int Field() const { return line_ + line_ / 2; }
  [[nodiscard]] int Gap() const { return line_ / 2; }
  /// The width of a text.
  [[nodiscard]] int WidthOf(const wchar_t* text) const;

 private:
  void Measure();

  HFONT font_;
  int line_ = 0;
};

}  // namespace quorvane::programs
