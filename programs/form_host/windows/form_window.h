#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "programs/form_host/windows/com.h"
#include "programs/form_host/windows/panel.h"

namespace quorvane::programs {

/// What may be laid over a form for its designer.
class FormTool {
 public:
  FormTool() = default;
  FormTool(const FormTool&) = delete;
  FormTool& operator=(const FormTool&) = delete;
  virtual ~FormTool() = default;

  /// Paints onto the form, whose control and panel stay in front.
  virtual void Paint(HDC surface) = 0;
  /// A message of the form's window; whether it is dealt with.
  [[nodiscard]] virtual bool Take(UINT message, LPARAM value) = 0;
};

/// The form's window, with a painted panel on it: one of its own, or a child of its owner. Without
/// a display there is none: Handle() is null then, and Reason() tells why.
class FormWindow {
 public:
  explicit FormWindow(HWND owner = nullptr);
  FormWindow(const FormWindow&) = delete;
  FormWindow& operator=(const FormWindow&) = delete;
  ~FormWindow();

  [[nodiscard]] HWND Handle() const { return handle_; }
  [[nodiscard]] const std::string& Reason() const { return reason_; }

  /// Called when the user asks for help by F1 in the window; must not throw.
  void OnHelp(std::function<void()> listener) { on_help_ = std::move(listener); }

  /// Lays the tool over the form; it must live as long as the window.
  void Use(FormTool& tool) { tool_ = &tool; }

  /// Shows the window without taking the focus away from anyone, and serves its messages for a
  /// moment. Raises what painting the panel has raised.
  void ShowForAMoment() const;
  /// Serves the messages of the shown window until the event is signalled.
  void StayUntil(HANDLE event) const;

  /// Where control and panel stand, in pixels of the window's inner area.
  [[nodiscard]] RECT PlaceOfControl() const { return place_; }
  void PutControl(const RECT& place);
  [[nodiscard]] static RECT PlaceOfPanel();
  /// The inner area, in pixels.
  static constexpr int kWidth = 320;
  static constexpr int kHeight = 200;

 private:
  static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM word, LPARAM value);
  void Paint() const;
  static void ServeMessages(HANDLE end, DWORD limit);

  HWND handle_ = nullptr;
  RECT place_;
  std::optional<Panel> panel_;
  std::function<void()> on_help_;
  FormTool* tool_ = nullptr;
  std::string reason_;
};

}  // namespace quorvane::programs
