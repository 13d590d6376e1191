#include "programs/form_host/windows/interactive/parts.h"

namespace quorvane::programs {

HWND MakePart(HWND window, const wchar_t* window_class, const Text& text, DWORD style, int id,
              DWORD extended_style) {
  const HWND part = ::CreateWindowExW(
      extended_style, window_class, Wide(text), WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, window,
      reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), ::GetModuleHandleW(nullptr), nullptr);
  if (part == nullptr) RaiseResult(HRESULT_FROM_WIN32(::GetLastError()), u"CreateWindowEx");
  return part;
}

Text TextOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(window)) + 1, L'\0');
  const int length = ::GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
  return Text(std::u16string(text.begin(), text.begin() + length));
}

void Put(HWND part, int left, int top, int width, int height) {
  ::SetWindowPos(part, nullptr, left, top, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace quorvane::programs
