#pragma once

#include <string>
#include <vector>

#include "platform/surface.h"
#include "tests/support/call_log.h"
#include "tests/support/fault_plan.h"

namespace quorvane::testing {

struct PaintedBand {
  Rect band;
  Colour colour = 0;
  friend bool operator==(const PaintedBand&, const PaintedBand&) = default;
};

/// Hands out brushes numbered from 1, writes every call down, and fails as the plan says. A brush
/// that could not be made is 0.
class FakeGdi32 final : public Gdi32 {
 public:
  explicit FakeGdi32(FaultPlan faults = FaultPlan()) : faults_(faults) {}

  Brush CreateSolidBrush(Colour colour) override {
    calls.push_back("CreateSolidBrush(" + std::to_string(colour) + ")");
    if (faults_.NextCallFails()) return Brush{0};
    ++living_brushes;
    return Brush{++last_brush_};
  }

  std::int32_t FillRect(DeviceContext hDC, const Rect& band, Brush brush) override {
    calls.push_back("FillRect(" + Number(hDC) + ", " + std::to_string(band.Left) + ' ' +
                    std::to_string(band.Top) + ' ' + std::to_string(band.Right) + ' ' +
                    std::to_string(band.Bottom) + ", " + Number(brush) + ")");
    return faults_.NextCallFails() ? 0 : 1;
  }

  std::int32_t DeleteObject(Brush brush) override {
    calls.push_back("DeleteObject(" + Number(brush) + ")");
    if (faults_.NextCallFails()) return 0;
    if (brush != Brush{0}) --living_brushes;
    return 1;
  }

  CallLog calls;
  int living_brushes = 0;

 private:
  template <class Handle>
  static std::string Number(Handle handle) {
    return std::to_string(static_cast<std::intptr_t>(handle));
  }

  FaultPlan faults_;
  std::intptr_t last_brush_ = 0;
};

/// Keeps the pairs of band and colour, and nothing else: for ramps by the million.
class BandRecorder final : public Gdi32 {
 public:
  Brush CreateSolidBrush(Colour colour) override {
    colour_ = colour;
    return Brush{1};
  }
  std::int32_t FillRect(DeviceContext, const Rect& band, Brush) override {
    bands.push_back({band, colour_});
    return 1;
  }
  std::int32_t DeleteObject(Brush) override { return 1; }

  std::vector<PaintedBand> bands;

 private:
  Colour colour_ = 0;
};

}  // namespace quorvane::testing
