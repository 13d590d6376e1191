#include "programs/form_host/windows/panel.h"

#include "ui/modDrawGradient.h"

namespace quorvane::programs {
namespace {

constexpr const wchar_t* kClassName = L"QuorvaneFormPanel";
constexpr double kTwipsPerPixel = 15;

HINSTANCE Program() { return ::GetModuleHandleW(nullptr); }

[[noreturn]] void RaiseLastError(const Text& source) {
  RaiseResult(HRESULT_FROM_WIN32(::GetLastError()), source);
}

}  // namespace

Panel::Panel(HWND form, const RECT& place) {
  WNDCLASSW window_class{};
  window_class.style = CS_OWNDC;
  window_class.lpfnWndProc = OnMessage;
  window_class.hInstance = Program();
  window_class.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
  window_class.hbrBackground = ::GetSysColorBrush(COLOR_3DFACE);
  window_class.lpszClassName = kClassName;
  ::RegisterClassW(&window_class);  // fails when an earlier form has done it, which is as good
  window_ = ::CreateWindowExW(0, kClassName, L"", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS,
                              place.left, place.top, place.right - place.left,
                              place.bottom - place.top, form, nullptr, Program(), nullptr);
  if (window_ == nullptr) RaiseLastError(u"CreateWindowEx");
  device_ = ::GetDC(window_);
  ::SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

Panel::~Panel() { ::DestroyWindow(window_); }

DeviceContext Panel::hDC() {
  return static_cast<DeviceContext>(reinterpret_cast<std::intptr_t>(device_));
}

double Panel::Width() { return kTwipsPerPixel * InnerArea().right; }

double Panel::Height() { return kTwipsPerPixel * InnerArea().bottom; }

RECT Panel::InnerArea() const {
  RECT area{};
  if (::GetClientRect(window_, &area) == 0) RaiseLastError(u"GetClientRect");
  return area;
}

void Panel::RaiseFailure() const {
  if (failure_) std::rethrow_exception(failure_);
}

void Panel::Paint() noexcept {
  PAINTSTRUCT paint;
  ::BeginPaint(window_, &paint);  // erases; gives no other device context than the window's own
  try {
    modDrawGradient::PaintFormGradient(*this);
    failure_ = nullptr;
  } catch (...) {
    failure_ = std::current_exception();
  }
  ::EndPaint(window_, &paint);
}

LRESULT CALLBACK Panel::OnMessage(HWND window, UINT message, WPARAM word, LPARAM value) {
  auto* const panel = reinterpret_cast<Panel*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
  if (message != WM_PAINT || panel == nullptr)
    return ::DefWindowProcW(window, message, word, value);
  panel->Paint();
  return 0;
}

}  // namespace quorvane::programs
