#include "ui/modDrawGradient.h"

#include "runtime/integers.h"
#include "runtime/rounding.h"
#include "runtime/runtime_error.h"
#include "ui/ramp_value.h"

namespace quorvane::modDrawGradient {
namespace {

enum : std::int16_t { kLeftToRight = 0, kTopToBottom = 1 };

constexpr std::int16_t kStepAllowance = 60;  // twips
constexpr std::int16_t kBandAllowance = 5;   // pixels
constexpr std::int32_t kSideAllowance = 2;   // pixels
constexpr std::int32_t kThickness = 3;       // pixels

// The unit of failure: an assignment that overflows or divides by zero leaves its variable alone.
template <class Variable, class Value>
void Assign(Variable& variable, Value value) {
  try {
    variable = value();
  } catch (...) {  // NOLINT(bugprone-empty-catch): dropped, also where raising it ran out of memory
  }
}

template <class Number>
struct Channels {
  Number red{};
  Number green{};
  Number blue{};
};

// A negative colour has a negative blue and channels from 0 to 255 beside it.
Channels<std::int16_t> Split(Colour colour) {
  const std::int32_t blue = colour >> 16;
  const std::int32_t rest = colour - blue * 65536;
  return {NarrowTo16(rest % 256), NarrowTo16(rest / 256), NarrowTo16(blue)};
}

Colour Composed(const Channels<RampValue>& running) {
  const std::int32_t green = CheckedMultiply(running.green.Rounded(), 256);
  const std::int32_t blue = CheckedMultiply(running.blue.Rounded(), 65536);
  return CheckedAdd(CheckedAdd(running.red.Rounded(), green), blue);
}

// The nearest whole pixel. No count of twips lies halfway, 15 being odd, and none lies so near to
// it that the quotient in floating point would round to the other side.
std::int32_t Pixels(std::int16_t twips) {
  constexpr std::int32_t kAboveZero = 4096;  // keeps the division from meeting a negative number
  return (2 * twips + 15 + 30 * kAboveZero) / 30 - kAboveZero;
}

RampValue Step(std::int16_t start, std::int16_t end, std::int16_t extent) {
  const std::int16_t difference = CheckedSubtract(end, start);
  const std::int16_t span = CheckedSubtract(extent, kStepAllowance);
  if (span == 0) Raise(ErrorNumber::kDivisionByZero);
  return RampValue::Step(difference, span);
}

}  // namespace

void DrawGradient(DeviceContext hDC, std::int32_t Width, std::int32_t Height, Colour StartColor,
                  Colour EndColor, std::int16_t Direction, Gdi32& gdi) {
  const Channels<std::int16_t> start = Split(StartColor);
  const Channels<std::int16_t> end = Split(EndColor);
  std::int16_t height = 0;
  std::int16_t width = 0;
  Assign(height, [&] { return NarrowTo16(Height); });
  Assign(width, [&] { return NarrowTo16(Width); });

  Channels<RampValue> running{RampValue(start.red), RampValue(start.green), RampValue(start.blue)};
  Channels<RampValue> step;
  Rect band;
  std::int16_t extent = 0;
  const auto set_steps = [&] {
    Assign(step.blue, [&] { return Step(start.blue, end.blue, extent); });
    Assign(step.green, [&] { return Step(start.green, end.green, extent); });
    Assign(step.red, [&] { return Step(start.red, end.red, extent); });
  };
  if (Direction == kLeftToRight) {
    extent = width;
    set_steps();
    band = {0, 0, kThickness, Pixels(height) - kSideAllowance};
  } else if (Direction == kTopToBottom) {
    extent = height;
    set_steps();
    band = {0, 0, Pixels(width) - kSideAllowance, kThickness};
  }

  Colour colour = 0;
  const std::int16_t last = NarrowTo16(Pixels(extent) - kBandAllowance);
  for (std::int16_t index = 0; index <= last; ++index) {
    Assign(colour, [&] { return Composed(running); });
    const Brush brush = gdi.CreateSolidBrush(colour);
    gdi.FillRect(hDC, band, brush);
    gdi.DeleteObject(brush);
    running.blue.Add(step.blue);
    running.green.Add(step.green);
    running.red.Add(step.red);
    if (Direction == kLeftToRight) {
      ++band.Left;
      ++band.Right;
    } else {
      ++band.Top;
      ++band.Bottom;
    }
  }
}

void PaintFormGradient(Surface& surface, Gdi32& gdi) {
  constexpr Colour kStart = 196 + 256 * 219 + 65536 * 249;
  constexpr Colour kEnd = 255 + 256 * 255 + 65536 * 255;
  const DeviceContext hDC = surface.hDC();
  const double width = surface.Width();
  const double height = surface.Height();
  DrawGradient(hDC, RoundTo32(width), RoundTo32(height), kStart, kEnd, kTopToBottom, gdi);
}

}  // namespace quorvane::modDrawGradient
