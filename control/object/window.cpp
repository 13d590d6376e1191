#include "control/object/window.h"

#include <utility>

#include "control/automation/module_lock.h"
#include "control/object/view.h"
#include "platform/windows/module_file.h"

namespace quorvane::component {
namespace {

constexpr const wchar_t* kClassName = L"QuorvaneSecurity.SecurityCtrl";

// Given back with the module, when no window can be left: each one holds the module.
struct WindowClass {
  ~WindowClass() {
    if (is_registered) ::UnregisterClassW(kClassName, ModuleInstance());
  }
  bool is_registered = false;
};

constinit WindowClass window_class;

// Another thread may be first; the class is there then just the same.
bool HaveClass(WNDPROC procedure) {
  if (window_class.is_registered) return true;
  WNDCLASSW description{};
  description.lpfnWndProc = procedure;
  description.hInstance = ModuleInstance();
  description.hCursor = ::LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));  // the arrow
  description.lpszClassName = kClassName;
  if (::RegisterClassW(&description) != 0 || ::GetLastError() == ERROR_CLASS_ALREADY_EXISTS)
    window_class.is_registered = true;
  return window_class.is_registered;
}

void Paint(HWND handle) {
  PAINTSTRUCT paint{};
  const HDC dc = ::BeginPaint(handle, &paint);
  if (dc == nullptr) return;
  RECT client{};
  ::GetClientRect(handle, &client);
  DrawControlIcon(dc, client);
  ::EndPaint(handle, &paint);
}

}  // namespace

// The window's user data is its ControlWindow, from the first message on, since the parent hears of
// the window before the call that makes it returns; null once the ControlWindow has let go of it.
LRESULT CALLBACK ControlWindow::OnMessage(HWND handle, UINT message, WPARAM first, LPARAM second) {
  switch (message) {
    case WM_NCCREATE: {
      auto* const window =
          static_cast<ControlWindow*>(reinterpret_cast<CREATESTRUCTW*>(second)->lpCreateParams);
      ::SetWindowLongW(handle, GWL_USERDATA, reinterpret_cast<LONG>(window));
      window->handle_ = handle;
      LockModule();
      return ::DefWindowProcW(handle, message, first, second);
    }
    case WM_ERASEBKGND:
      return 1;  // the picture fills it
    case WM_PAINT:
      Paint(handle);
      return 0;
    case WM_PRINTCLIENT: {
      RECT client{};
      ::GetClientRect(handle, &client);
      DrawControlIcon(reinterpret_cast<HDC>(first), client);
      return 0;
    }
    case WM_NCDESTROY: {
      // Whoever destroyed it: from here on there is none.
      const LRESULT result = ::DefWindowProcW(handle, message, first, second);
      auto* const window = reinterpret_cast<ControlWindow*>(::GetWindowLongW(handle, GWL_USERDATA));
      if (window != nullptr && window->handle_ == handle) window->handle_ = nullptr;
      UnlockModule();
      return result;
    }
    default:
      return ::DefWindowProcW(handle, message, first, second);
  }
}

void ControlWindow::Create(HWND parent, const RECT& where) {
  if (!HaveClass(OnMessage)) return;
  // The handle comes with the first message, and what comes back here may be gone already.
  ::CreateWindowExW(0, kClassName, L"", WS_CHILD | WS_CLIPSIBLINGS | WS_VISIBLE, where.left,
                    where.top, where.right - where.left, where.bottom - where.top, parent, nullptr,
                    ModuleInstance(), this);
}

// Let go of first: its last messages let the host run, and another thread's window does not end.
void ControlWindow::Destroy() {
  const HWND destroyed = std::exchange(handle_, nullptr);
  if (destroyed == nullptr) return;
  ::SetWindowLongW(destroyed, GWL_USERDATA, 0);
  ::DestroyWindow(destroyed);
}

void ControlWindow::Show(bool visible) {
  if (handle_ != nullptr) ::ShowWindow(handle_, visible ? SW_SHOWNA : SW_HIDE);
}

void ControlWindow::Place(const RECT& where, const RECT* clip) {
  const HWND placed = handle_;
  RECT shown = where;
  if (clip != nullptr) ::IntersectRect(&shown, &where, clip);
  // A region in the window's own coordinates, owned by the window from here on; none shows all.
  const bool is_whole = ::EqualRect(&shown, &where) != FALSE;
  const HRGN region = is_whole
                          ? nullptr
                          : ::CreateRectRgn(shown.left - where.left, shown.top - where.top,
                                            shown.right - where.left, shown.bottom - where.top);
  if (::SetWindowRgn(placed, region, TRUE) == 0 && region != nullptr) ::DeleteObject(region);
  if (handle_ != placed) return;  // destroyed at one of the messages
  ::SetWindowPos(placed, nullptr, where.left, where.top, where.right - where.left,
                 where.bottom - where.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace quorvane::component
