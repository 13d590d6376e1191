// Where the parts of the window for people stand: buttons above, the form beside its settings, the
// calls below, which take what room is left, and what came of the latest order.

#include <algorithm>
#include <string>

#include "programs/form_host/windows/interactive/main_window.h"
#include "programs/form_host/windows/interactive/parts.h"

namespace quorvane::programs {
namespace {

// The room around a button's text.
int WidthOfButton(const Look& look, HWND button) {
  return look.WidthOf(Wide(TextOf(button))) + 2 * look.Line();
}

// With its border, in pixels that do not follow the density: the panel's places are fixed.
constexpr int kFormWidth = FormWindow::kWidth;
constexpr int kFormHeight = FormWindow::kHeight;
constexpr int kLeastLines = 5;  // of calls

}  // namespace

void MainWindow::Layout() {
  RECT area{};
  ::GetClientRect(top_.Handle(), &area);
  const int gap = look_.Gap();
  const int inner = static_cast<int>(area.right) - 2 * gap;
  int x = gap;
  for (const HWND button : buttons_) {
    const int width = WidthOfButton(look_, button);
    Put(button, x, gap, width, look_.Field());
    x += width + gap / 2;
  }
  int y = 2 * gap + look_.Field();
  if (document_.IsOpen()) Put(document_.Form().Window().Handle(), gap, y, kFormWidth, kFormHeight);
  const int left = 2 * gap + kFormWidth;
  const int rows = settings_.Place(look_, left, y, static_cast<int>(area.right) - gap - left);
  y += std::max(kFormHeight, rows) + gap;
  Put(calls_name_, gap, y, inner, look_.Line());
  y += look_.Line() + gap / 2;
  const int bottom = static_cast<int>(area.bottom) - gap - look_.Line();
  Put(calls_.Handle(), gap, y, inner, std::max(0, bottom - gap - y));
  Put(status_, gap, bottom, inner, look_.Line());
  ::InvalidateRect(top_.Handle(), nullptr, TRUE);
}

SIZE MainWindow::LeastSize() const {
  const int gap = look_.Gap();
  int buttons = gap;
  for (const HWND button : buttons_) buttons += WidthOfButton(look_, button) + gap / 2;
  const int beside = 3 * gap + kFormWidth + settings_.LeastWidth(look_);
  const int rows = static_cast<int>(kSettings.size()) * (look_.Field() + gap / 2);
  const int below = (kLeastLines + 2) * look_.Line() + 4 * gap;
  RECT frame{0, 0, std::max(buttons, beside),
             2 * gap + look_.Field() + std::max(kFormHeight, rows) + below};
  ::AdjustWindowRectEx(&frame, WS_OVERLAPPEDWINDOW, TRUE, WS_EX_CONTROLPARENT);
  return {frame.right - frame.left, frame.bottom - frame.top};
}

}  // namespace quorvane::programs
