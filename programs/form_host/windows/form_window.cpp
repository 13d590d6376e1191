#include "programs/form_host/windows/form_window.h"

#include "programs/common/windows/system_message.h"

namespace quorvane::programs {
namespace {

constexpr const wchar_t* kClassName = L"QuorvaneFormHost";
constexpr DWORD kStyle = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
constexpr DWORD kExtendedStyle = WS_EX_NOACTIVATE;
constexpr DWORD kMoment = 250;  // milliseconds
constexpr DWORD kChildStyle = WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN;
constexpr RECT kFirstPlaceOfControl{24, 24, 52, 52};
constexpr RECT kPlaceOfPanel{24, 64, 296, 176};

HINSTANCE Program() { return ::GetModuleHandleW(nullptr); }

}  // namespace

FormWindow::FormWindow(HWND owner) : place_(kFirstPlaceOfControl) {
  WNDCLASSW window_class{};
  window_class.lpfnWndProc = OnMessage;
  window_class.hInstance = Program();
  window_class.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
  window_class.lpszClassName = kClassName;
  ::RegisterClassW(&window_class);  // fails when an earlier form has done it, which is as good
  const DWORD style = owner != nullptr ? kChildStyle : kStyle;
  const DWORD extended_style = owner != nullptr ? 0 : kExtendedStyle;
  RECT frame{0, 0, kWidth, kHeight};
  ::AdjustWindowRectEx(&frame, style, FALSE, extended_style);
  handle_ = ::CreateWindowExW(extended_style, kClassName, L"Form", style, CW_USEDEFAULT,
                              CW_USEDEFAULT, frame.right - frame.left, frame.bottom - frame.top,
                              owner, nullptr, Program(), nullptr);
  if (handle_ == nullptr) {
    reason_ = SystemMessage(::GetLastError());
    return;
  }
  ::SetWindowLongPtrW(handle_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  panel_.emplace(handle_, kPlaceOfPanel);
}

RECT FormWindow::PlaceOfPanel() { return kPlaceOfPanel; }

FormWindow::~FormWindow() {
  panel_.reset();
  if (handle_ != nullptr) ::DestroyWindow(handle_);
}

void FormWindow::ShowForAMoment() const {
  ::ShowWindow(handle_, SW_SHOWNOACTIVATE);
  ::UpdateWindow(handle_);
  ServeMessages(nullptr, kMoment);
  panel_->RaiseFailure();
}

void FormWindow::StayUntil(HANDLE event) const { ServeMessages(event, INFINITE); }

void FormWindow::ServeMessages(HANDLE end, DWORD limit) {
  const DWORD count = end != nullptr ? 1 : 0;
  const DWORD start = ::GetTickCount();
  for (;;) {
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
      ::TranslateMessage(&message);
      ::DispatchMessageW(&message);
    }
    const DWORD passed = ::GetTickCount() - start;
    if (passed >= limit) return;
    const DWORD left = limit == INFINITE ? INFINITE : limit - passed;
    const DWORD signal = ::MsgWaitForMultipleObjects(count, &end, FALSE, left, QS_ALLINPUT);
    if (signal == WAIT_FAILED || signal < WAIT_OBJECT_0 + count) return;
  }
}

void FormWindow::PutControl(const RECT& place) {
  place_ = place;
  ::InvalidateRect(handle_, nullptr, FALSE);
}

// What lies behind the control and the panel.
void FormWindow::Paint() const {
  PAINTSTRUCT paint;
  const HDC surface = ::BeginPaint(handle_, &paint);
  RECT area;
  ::GetClientRect(handle_, &area);
  ::FillRect(surface, &area, ::GetSysColorBrush(COLOR_3DFACE));
  if (tool_ != nullptr) tool_->Paint(surface);
  ::EndPaint(handle_, &paint);
}

LRESULT CALLBACK FormWindow::OnMessage(HWND window, UINT message, WPARAM word, LPARAM value) {
  const auto* const form =
      reinterpret_cast<const FormWindow*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
  if (form == nullptr) return ::DefWindowProcW(window, message, word, value);
  if (form->tool_ != nullptr && form->tool_->Take(message, value)) return TRUE;
  switch (message) {
    case WM_ERASEBKGND:
      return 1;  // Paint() covers everything
    case WM_PAINT:
      form->Paint();
      return 0;
    case WM_HELP:
      if (form->on_help_) form->on_help_();
      return TRUE;
    case WM_CLOSE:
      return 0;  // the form closes its window itself, behind the control's
    default:
      return ::DefWindowProcW(window, message, word, value);
  }
}

}  // namespace quorvane::programs
