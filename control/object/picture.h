#pragma once

#include "control/automation/com.h"

namespace quorvane::server {

/// Draws the design-time picture, the module's icon, into the rectangle, over the colour of
/// dialogs. What the system cannot draw is left out.
void DrawPicture(HDC dc, const RECT& where);

}  // namespace quorvane::server
