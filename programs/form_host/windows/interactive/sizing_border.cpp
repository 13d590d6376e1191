#include "programs/form_host/windows/interactive/sizing_border.h"

#include <algorithm>

namespace quorvane::programs {
namespace {

constexpr int kSide = 6;  // of a handle, in pixels

POINT PointOf(LPARAM value) {
  return {static_cast<SHORT>(LOWORD(value)), static_cast<SHORT>(HIWORD(value))};
}

}  // namespace

SizingBorder::SizingBorder(FormWindow& form, Listener listener)
    : form_(form), listener_(std::move(listener)) {
  form_.Use(*this);
}

// Outside the control, whose window would hide it.
RECT SizingBorder::PlaceOf(const Handle& handle) const {
  const RECT control = form_.PlaceOfControl();
  const LONG left = handle.moves_right ? control.right : (control.left + control.right - kSide) / 2;
  const LONG top =
      handle.moves_bottom ? control.bottom : (control.top + control.bottom - kSide) / 2;
  return {left, top, left + kSide, top + kSide};
}

const SizingBorder::Handle* SizingBorder::HandleAt(POINT point) const {
  const auto* const found = std::ranges::find_if(kHandles, [&](const Handle& handle) {
    const RECT place = PlaceOf(handle);
    return ::PtInRect(&place, point) != FALSE;
  });
  return found == kHandles.end() ? nullptr : found;
}

void SizingBorder::Paint(HDC surface) {
  for (const Handle& handle : kHandles) {
    const RECT place = PlaceOf(handle);
    ::FillRect(surface, &place, ::GetSysColorBrush(COLOR_HIGHLIGHT));
  }
  if (dragged_ != nullptr) ::FrameRect(surface, &outline_, ::GetSysColorBrush(COLOR_HIGHLIGHT));
}

bool SizingBorder::Take(UINT message, LPARAM value) {
  switch (message) {
    case WM_SETCURSOR:
      return LOWORD(value) == HTCLIENT && ShowCursor();
    case WM_LBUTTONDOWN:
      return Start(PointOf(value));
    case WM_MOUSEMOVE:
      if (dragged_ != nullptr) Drag(PointOf(value));
      return dragged_ != nullptr;
    case WM_LBUTTONUP:
      if (dragged_ == nullptr) return false;
      Drag(PointOf(value));
      Drop();
      return true;
    case WM_CAPTURECHANGED:
      Cancel();
      return false;
    default:
      return false;
  }
}

bool SizingBorder::ShowCursor() const {
  POINT point{};
  ::GetCursorPos(&point);
  ::ScreenToClient(form_.Handle(), &point);
  const Handle* const handle = HandleAt(point);
  if (handle == nullptr) return false;
  const auto* const both = handle->moves_right ? IDC_SIZEWE : IDC_SIZENS;
  ::SetCursor(
      ::LoadCursorW(nullptr, handle->moves_right && handle->moves_bottom ? IDC_SIZENWSE : both));
  return true;
}

bool SizingBorder::Start(POINT point) {
  dragged_ = HandleAt(point);
  if (dragged_ == nullptr) return false;
  outline_ = form_.PlaceOfControl();
  ::SetCapture(form_.Handle());
  return true;
}

void SizingBorder::Drag(POINT point) {
  if (dragged_->moves_right) outline_.right = std::max(outline_.left + 1, point.x);
  if (dragged_->moves_bottom) outline_.bottom = std::max(outline_.top + 1, point.y);
  ::InvalidateRect(form_.Handle(), nullptr, FALSE);
}

void SizingBorder::Drop() {
  const SIZE pixels{outline_.right - outline_.left, outline_.bottom - outline_.top};
  Cancel();
  ::ReleaseCapture();
  listener_(pixels);
}

void SizingBorder::Cancel() {
  dragged_ = nullptr;
  ::InvalidateRect(form_.Handle(), nullptr, FALSE);
}

}  // namespace quorvane::programs
