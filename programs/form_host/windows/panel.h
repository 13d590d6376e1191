#pragma once

#include <exception>

#include "platform/surface.h"
#include "programs/form_host/windows/com.h"

namespace quorvane::programs {

/// A picture panel on a form: a child window with its own device context, which tells its size in
/// twips. It shows the painter's ramp in the house's colours.
///
/// The ramp is not kept: the panel paints it anew, straight to its window, whenever the system asks
/// for it. So it is there as soon as the loaded form is shown, and again after whatever has covered
/// it. Lines that the painter leaves out stay in the form's colour.
class Panel final : public Surface {
 public:
  /// Stands at that place of the form, in pixels. Raises the system's error when the window cannot
  /// be made.
  Panel(HWND form, const RECT& place);
  Panel(const Panel&) = delete;
  Panel& operator=(const Panel&) = delete;
  ~Panel() override;

  /// The device context is the window's and lives as long as it does.
  [[nodiscard]] DeviceContext hDC() override;
  [[nodiscard]] double Width() override;
  [[nodiscard]] double Height() override;

  /// Raises what the latest painting has raised, if it has: the system asks for a painting in the
  /// midst of its own code, where nothing can be raised.
  void RaiseFailure() const;

 private:
  static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM word, LPARAM value);
  [[nodiscard]] RECT InnerArea() const;
  void Paint() noexcept;

  HWND window_ = nullptr;
  HDC device_ = nullptr;
  std::exception_ptr failure_;
};

}  // namespace quorvane::programs
