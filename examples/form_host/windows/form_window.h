#pragma once

#include <string>

#include "examples/form_host/windows/com.h"

namespace quorvane::examples {

/// The form's window. Without a display there is none: Handle() is null then, and Reason() tells
/// why.
class FormWindow {
 public:
  FormWindow();
  FormWindow(const FormWindow&) = delete;
  FormWindow& operator=(const FormWindow&) = delete;
  ~FormWindow();

  [[nodiscard]] HWND Handle() const { return handle_; }
  [[nodiscard]] const std::string& Reason() const { return reason_; }

  /// Shows the window without taking the focus away from anyone, and serves its messages for a
  /// moment.
  void ShowForAMoment() const;

  /// Where the control stands, in pixels of the window's inner area.
  [[nodiscard]] static RECT PlaceOfControl();
  /// The inner area, in pixels.
  static constexpr int kWidth = 320;
  static constexpr int kHeight = 200;

 private:
  static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM word, LPARAM value);
  static void Paint(HDC surface, const RECT& area);

  HWND handle_ = nullptr;
  std::string reason_;
};

}  // namespace quorvane::examples
