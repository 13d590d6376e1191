#include "programs/form_host/windows/interactive/look.h"

#include <cwchar>

namespace quorvane::programs {
namespace {

HFONT MessageFont() {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  if (::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0) == 0)
    return nullptr;  // the old font of the system
  return ::CreateFontIndirectW(&metrics.lfMessageFont);
}

// A device context of the screen with that font in it.
class Measuring {
 public:
  explicit Measuring(HFONT font)
      : screen_(::GetDC(nullptr)), before_(::SelectObject(screen_, font)) {}
  Measuring(const Measuring&) = delete;
  Measuring& operator=(const Measuring&) = delete;
  ~Measuring() {
    ::SelectObject(screen_, before_);
    ::ReleaseDC(nullptr, screen_);
  }

  [[nodiscard]] HDC Screen() const { return screen_; }

 private:
  HDC screen_;
  HGDIOBJ before_;
};

BOOL CALLBACK GiveFont(HWND window, LPARAM font) {
  ::SendMessageW(window, WM_SETFONT, static_cast<WPARAM>(font), TRUE);
  return TRUE;
}

}  // namespace

Look::Look() : font_(MessageFont()) { Measure(); }

Look::~Look() { ::DeleteObject(font_); }

void Look::Apply(HWND window) {
  const HFONT old = font_;
  font_ = MessageFont();
  Measure();
  ::EnumChildWindows(window, GiveFont, reinterpret_cast<LPARAM>(font_));
  ::DeleteObject(old);
}

void Look::Measure() {
  const Measuring measuring(font_);
  TEXTMETRICW metrics{};
  ::GetTextMetricsW(measuring.Screen(), &metrics);
  line_ = metrics.tmHeight;
}

int Look::WidthOf(const wchar_t* text) const {
  const Measuring measuring(font_);
  SIZE size{};
  ::GetTextExtentPoint32W(measuring.Screen(), text, static_cast<int>(std::wcslen(text)), &size);
  return size.cx;
}

}  // namespace quorvane::programs
