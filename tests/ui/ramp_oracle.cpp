#include "tests/ui/ramp_oracle.h"

#include <cfloat>
#include <cmath>

namespace quorvane::testing {
namespace {

static_assert(FLT_EVAL_METHOD == 0, "a float or double must be rounded at each operation");

// Ties to even by its definition, not by the rounding mode of the moment.
double Nearest(double value) {
  const double below = std::floor(value);
  const double behind = value - below;
  if (behind < 0.5) return below;
  if (behind > 0.5) return below + 1;
  return std::fmod(below, 2) == 0 ? below : below + 1;
}

int SixteenBits(std::int32_t value) { return value < -32768 || value > 32767 ? 0 : value; }

struct Channel {
  float running;
  float step = 0;
  Channel(int start, int end, int extent) : running(static_cast<float>(start)) {
    if (extent != 60)
      step = static_cast<float>(static_cast<double>(end - start) / (extent - 60) * 15);
  }
  void Add() {
    running = static_cast<float>(static_cast<double>(running) + static_cast<double>(step));
  }
  [[nodiscard]] int Shown() const {
    return static_cast<int>(Nearest(static_cast<double>(running)));
  }
};

}  // namespace

std::vector<PaintedBand> BandsInFloatingPoint(std::int32_t width, std::int32_t height, Colour start,
                                              Colour end, std::int16_t direction) {
  std::vector<PaintedBand> bands;
  if (direction != 0 && direction != 1) return bands;
  const bool down = direction == 1;
  const int along = SixteenBits(down ? height : width);
  const int across = SixteenBits(down ? width : height);
  Channel red(start & 255, end & 255, along);
  Channel green((start >> 8) & 255, (end >> 8) & 255, along);
  Channel blue(start >> 16, end >> 16, along);
  const int side = static_cast<int>(Nearest(across / 15.0 - 2));
  const int last = static_cast<int>(Nearest(along / 15.0 - 5));
  for (int index = 0; index <= last; ++index) {
    const Rect band = down ? Rect{0, index, side, index + 3} : Rect{index, 0, index + 3, side};
    bands.push_back({band, red.Shown() + 256 * green.Shown() + 65536 * blue.Shown()});
    blue.Add();
    green.Add();
    red.Add();
  }
  return bands;
}

}  // namespace quorvane::testing
