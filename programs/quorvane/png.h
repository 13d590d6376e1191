#pragma once

#include <string>

#include "programs/picture/picture.h"

namespace quorvane::programs {

/// The picture as a PNG file (W3C Portable Network Graphics, 8 bits a channel, true colour). Its
/// bytes are not compressed: the picture can be read by any program, and none is needed to write
/// it.
[[nodiscard]] std::string PngOf(Picture& picture);

}  // namespace quorvane::programs
