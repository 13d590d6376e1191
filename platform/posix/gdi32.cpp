#include "platform/gdi32.h"

#include "platform/posix/pixels.h"

namespace quorvane {
namespace {

// A brush is nothing but its colour here, with a mark that tells it from none.
static_assert(sizeof(std::intptr_t) > sizeof(Colour));
constexpr std::intptr_t kBrushMark = std::intptr_t{0x42} << 32;

bool IsBrush(Brush brush) {
  return (static_cast<std::intptr_t>(brush) & ~std::intptr_t{0xFFFFFFFF}) == kBrushMark;
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
    pixels->Fill(rectangle, static_cast<Colour>(static_cast<std::intptr_t>(brush)));
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
