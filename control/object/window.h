#pragma once

#include "control/automation/com.h"

namespace quorvane::component {

/// The child window that shows the picture while the control is in-place active. Hosts put their
/// own procedure on top of it, give it another parent or destroy it; the control works on after
/// each.
///
/// Every operation that changes a window sends messages, to the window and to its parent, and so
/// lets the host run: when it returns, the host may have called any other of these operations.
/// Handle() then tells what holds. A window keeps the module in memory as long as it lives itself.
class ControlWindow {
 public:
  ControlWindow() = default;
  ControlWindow(const ControlWindow&) = delete;
  ControlWindow& operator=(const ControlWindow&) = delete;
  ~ControlWindow() { Destroy(); }

  /// Makes the window, visible. There must be none yet. Handle() stays null when the system cannot,
  /// and is null again when the host destroyed the window at the news of it.
  void Create(HWND parent, const RECT& where);
  /// May be repeated.
  void Destroy();
  /// Null when there is none, or no longer; known from the window's first message on.
  [[nodiscard]] HWND Handle() const { return handle_; }

  void Show(bool visible);
  /// Moves it and shows only what lies in the clip rectangle; both in the parent's coordinates. A
  /// null clip rectangle shows all. There must be one.
  void Place(const RECT& where, const RECT* clip);

 private:
  static LRESULT CALLBACK OnMessage(HWND handle, UINT message, WPARAM first, LPARAM second);

  HWND handle_ = nullptr;
};

}  // namespace quorvane::component
