#include "platform/gdi32.h"

#include <algorithm>
#include <utility>

#include "platform/posix/pixels.h"

namespace quorvane {
namespace {

// A brush is nothing but its colour here, with a mark that tells it from none.
static_assert(sizeof(std::intptr_t) > sizeof(Colour));
constexpr std::intptr_t kBrushMark = std::intptr_t{0x42} << 32;

bool IsBrush(Brush brush) {
  return (static_cast<std::intptr_t>(brush) & ~std::intptr_t{0xFFFFFFFF}) == kBrushMark;
}

// What one side of a rectangle and pixels of that size share. A side that ends before it starts
// is turned about with its start inside and its end outside, as the system's own library does it.
std::pair<std::int32_t, std::int32_t> Shared(std::int32_t start, std::int32_t end,
                                             std::int32_t size) {
  if (end < start) return {std::max(end + 1, 0), std::min(start + 1, size)};
  return {std::max(start, 0), std::min(end, size)};
}

class PosixGdi32 final : public Gdi32 {
 public:
  Brush CreateSolidBrush(Colour colour) override {
    return static_cast<Brush>(kBrushMark | static_cast<std::uint32_t>(colour));
  }

  std::int32_t FillRect(DeviceContext hDC, const Rect& rectangle, Brush brush) override {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the handle is the pixels' address
    auto* const pixels = reinterpret_cast<Pixels*>(static_cast<std::intptr_t>(hDC));
    if (pixels == nullptr || !IsBrush(brush)) return 0;
    const auto colour = static_cast<Colour>(static_cast<std::intptr_t>(brush));
    const auto [left, right] = Shared(rectangle.Left, rectangle.Right, pixels->width);
    const auto [top, bottom] = Shared(rectangle.Top, rectangle.Bottom, pixels->height);
    for (std::int32_t y = top; y < bottom && left < right; ++y) {
      std::fill_n(&pixels->At(left, y), right - left, colour);
    }
    return 1;
  }

  std::int32_t DeleteObject(Brush brush) override { return IsBrush(brush) ? 1 : 0; }
};

}  // namespace

Gdi32& gdi32() noexcept {
  static PosixGdi32 instance;
  return instance;
}

}  // namespace quorvane
