#pragma once

#include <array>
#include <functional>
#include <optional>
#include <utility>

#include "programs/form_host/windows/form_window.h"

namespace quorvane::programs {

/// Handles around the form's control, by which its size is dragged, as designers have them: at its
/// right edge, its bottom edge and the corner between them.
class SizingBorder final : public FormTool {
 public:
  /// Told the size in pixels at which the user lets go; must not throw.
  using Listener = std::function<void(const SIZE& pixels)>;

  SizingBorder(FormWindow& form, Listener listener);

  void Paint(HDC surface) override;
  [[nodiscard]] bool Take(UINT message, LPARAM value) override;

 private:
  /// Which of width and height a handle changes.
  struct Handle {
    bool moves_right;
    bool moves_bottom;
  };
  static constexpr std::array<Handle, 3> kHandles{{{true, false}, {false, true}, {true, true}}};

  [[nodiscard]] RECT PlaceOf(const Handle& handle) const;
  [[nodiscard]] const Handle* HandleAt(POINT point) const;
  [[nodiscard]] bool ShowCursor() const;
  [[nodiscard]] bool Start(POINT point);
  void Drag(POINT point);
  void Drop();
  void Cancel();

  FormWindow& form_;
  Listener listener_;
  const Handle* dragged_ = nullptr;
  RECT outline_{};  // while dragging
};

}  // namespace quorvane::programs
