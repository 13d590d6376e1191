#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "programs/form_host/windows/com.h"
#include "programs/form_host/windows/panel.h"

namespace quorvane::programs {

/// The form's window, with a painted panel on it. Without a display there is none: Handle() is null
/// then, and Reason() tells why.
class FormWindow {
 public:
  FormWindow();
  FormWindow(const FormWindow&) = delete;
  FormWindow& operator=(const FormWindow&) = delete;
  ~FormWindow();

  [[nodiscard]] HWND Handle() const { return handle_; }
  [[nodiscard]] const std::string& Reason() const { return reason_; }

  /// Called when the user asks for help by F1 in the window; must not throw.
  void OnHelp(std::function<void()> listener) { on_help_ = std::move(listener); }

  /// Shows the window without taking the focus away from anyone, and serves its messages for a
  /// moment. Raises what painting the panel has raised.
  void ShowForAMoment() const;
  /// Serves the messages of the shown window until the event is signalled.
  void StayUntil(HANDLE event) const;

  /// Where control and panel stand, in pixels of the window's inner area.
  [[nodiscard]] static RECT PlaceOfControl();
  [[nodiscard]] static RECT PlaceOfPanel();
  /// The inner area, in pixels.
  static constexpr int kWidth = 320;
  static constexpr int kHeight = 200;

 private:
  static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM word, LPARAM value);
  static void Paint(HDC surface, const RECT& area);
  static void ServeMessages(HANDLE end, DWORD limit);

  HWND handle_ = nullptr;
  std::optional<Panel> panel_;
  std::function<void()> on_help_;
  std::string reason_;
};

}  // namespace quorvane::programs
