#include "platform/posix/pixels.h"

#include <algorithm>

#include "runtime/runtime_error.h"

namespace quorvane {
namespace {

struct Span {
  std::int32_t first;
  std::int32_t end;
};

// What one side of a rectangle and pixels of that size share. A side that ends before it starts
// is turned about with its start inside and its end outside, as the system's own library does it.
Span Shared(std::int32_t start, std::int32_t end, std::int32_t size) {
  if (end < start) return {std::max(end + 1, 0), std::min(start + 1, size)};
  return {std::max(start, 0), std::min(end, size)};
}

}  // namespace

Pixels::Pixels(std::int32_t width, std::int32_t height, Colour background)
    : width_(width),
      height_(height),
      pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), background) {}

DeviceContext Pixels::Handle() {
  return static_cast<DeviceContext>(reinterpret_cast<std::intptr_t>(this));
}

Colour Pixels::At(std::int32_t x, std::int32_t y) const {
  const bool inside = x >= 0 && x < width_ && y >= 0 && y < height_;
  if (!inside) Raise(ErrorNumber::kSubscriptOutOfRange);
  return pixels_[Index(x, y)];
}

void Pixels::Fill(const Rect& rectangle, Colour colour) {
  const Span columns = Shared(rectangle.Left, rectangle.Right, width_);
  const Span rows = Shared(rectangle.Top, rectangle.Bottom, height_);
  if (columns.first >= columns.end) return;
  for (std::int32_t y = rows.first; y < rows.end; ++y) {
    std::fill_n(&pixels_[Index(columns.first, y)], columns.end - columns.first, colour);
  }
}

}  // namespace quorvane
