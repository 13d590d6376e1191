// The painter on the largest surface, 2180 bands: its arithmetic alone, and the whole against the
// same bands handed to the three calls from a list; the latter for smaller surfaces, too.

#include <benchmark/benchmark.h>

#include <array>
#include <vector>

#include "benchmarks/sweep.h"
#include "programs/picture/picture.h"
#include "tests/support/fake_gdi32.h"
#include "ui/modDrawGradient.h"

namespace quorvane::benchmarks {
namespace {

using modDrawGradient::DrawGradient;

constexpr std::int32_t kExtent = 32767;
constexpr int kBands = 2180;
constexpr Colour kStart = 196 + 256 * 219 + 65536 * 249;
constexpr Colour kEnd = 0xFFFFFF;

// Calls that cost next to nothing.
class NoPainting final : public Gdi32 {
 public:
  Brush CreateSolidBrush(Colour colour) override { return Brush{colour}; }
  std::int32_t FillRect(DeviceContext /*hDC*/, const Rect& band, Brush brush) override {
    seen_ += band.Bottom + static_cast<std::int32_t>(brush);
    return 1;
  }
  std::int32_t DeleteObject(Brush /*brush*/) override { return 1; }

 private:
  std::int32_t seen_ = 0;
};

// Sixty cycles for each band: twenty multiplications, three cycles each, in a chain. A ratio of 1
// or more says that the painter needs no more.
void SixtyCycles(benchmark::State& state) {
  std::uint32_t value = 3;
  for ([[maybe_unused]] auto round : state) {
    for (int band = 0; band < kBands; ++band) {
      for (int i = 0; i < 20; ++i) {
        value *= 0x9E3779B1U;
        benchmark::DoNotOptimize(value);
      }
    }
  }
}

void Arithmetic(benchmark::State& state) {
  NoPainting gdi;
  for ([[maybe_unused]] auto round : state) {
    DrawGradient(DeviceContext{1}, 6000, kExtent, kStart, kEnd, 1, gdi);
  }
}

// Extents in twips of a surface of 400 pixels, up to the largest.
constexpr std::array kExtents{2048, 4096, 8192, 16384, 24576, kExtent};

void ThreeCallsAlone(benchmark::State& state, std::int32_t width, std::int32_t extent) {
  const auto picture = makePicture(width, extent / 15, 0);
  testing::BandRecorder recorder;
  DrawGradient(picture->hDC(), width * 15, extent, kStart, kEnd, 1, recorder);
  Gdi32& gdi = gdi32();
  for ([[maybe_unused]] auto round : state) {
    for (const testing::PaintedBand& band : recorder.bands) {
      const Brush brush = gdi.CreateSolidBrush(band.colour);
      gdi.FillRect(picture->hDC(), band.band, brush);
      gdi.DeleteObject(brush);
    }
  }
}

void Painting(benchmark::State& state, std::int32_t width, std::int32_t extent) {
  const auto picture = makePicture(width, extent / 15, 0);
  for ([[maybe_unused]] auto round : state) {
    DrawGradient(picture->hDC(), width * 15, extent, kStart, kEnd, 1);
  }
}

template <void measure(benchmark::State&, std::int32_t, std::int32_t)>
void OfExtent(benchmark::State& state, int extent) {
  measure(state, 400, extent);
}

[[maybe_unused]] const bool kSurfaces =
    Sweep("Surface", kExtents, "base_three_calls", OfExtent<ThreeCallsAlone>) &&
    Sweep("Surface", kExtents, "DrawGradient", OfExtent<Painting>);

BENCHMARK(SixtyCycles)->Name("Arithmetic/base_60_cycles_a_band");
BENCHMARK(Arithmetic)->Name("Arithmetic/DrawGradient");
BENCHMARK_CAPTURE(ThreeCallsAlone, , 2184, kExtent)->Name("Paint2184/base_three_calls");
BENCHMARK_CAPTURE(Painting, , 2184, kExtent)->Name("Paint2184/DrawGradient");

}  // namespace
}  // namespace quorvane::benchmarks
