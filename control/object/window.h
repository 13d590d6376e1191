#pragma once

#include <optional>

#include "control/automation/com.h"
#include "control/automation/module_lock.h"

namespace quorvane::server {

/// The child window that shows the picture while the control is in-place active. Hosts put their
/// own procedure on top of it, give it another parent or destroy it; all of that is borne.
class ControlWindow {
 public:
  ControlWindow() = default;
  ControlWindow(const ControlWindow&) = delete;
  ControlWindow& operator=(const ControlWindow&) = delete;
  ~ControlWindow() { Destroy(); }

  /// Makes the window, visible; false when the system cannot. There must be none yet.
  [[nodiscard]] bool Create(HWND parent, const RECT& where);
  /// May be repeated.
  void Destroy();
  /// Null when there is none, or no longer.
  [[nodiscard]] HWND Handle() const { return handle_; }

  void Show(bool visible);
  /// Moves it and shows only what lies in the clip rectangle; both in the parent's coordinates. A
  /// null clip rectangle shows all.
  void Place(const RECT& where, const RECT* clip);

 private:
  static LRESULT CALLBACK OnMessage(HWND handle, UINT message, WPARAM first, LPARAM second);

  HWND handle_ = nullptr;
  std::optional<ModuleLock> lock_;  // while the window lives
};

}  // namespace quorvane::server
