#include "control/object/picture.h"

#include "control/interface/identities.h"
#include "platform/windows/module_file.h"

namespace quorvane::server {

void DrawPicture(HDC dc, const RECT& where) {
  ::FillRect(dc, &where, ::GetSysColorBrush(COLOR_BTNFACE));
  // Loaded for each drawing, which is rare: a shared icon would outlive the module.
  const HANDLE icon =
      ::LoadImageW(ModuleInstance(), MAKEINTRESOURCEW(identities::kControlIconResource), IMAGE_ICON,
                   0, 0, LR_DEFAULTCOLOR);
  if (icon == nullptr) return;
  ::DrawIconEx(dc, where.left, where.top, static_cast<HICON>(icon), where.right - where.left,
               where.bottom - where.top, 0, nullptr, DI_NORMAL);
  ::DestroyIcon(static_cast<HICON>(icon));
}

}  // namespace quorvane::server
