#pragma once

#include "control/automation/com.h"

namespace quorvane::component {

/// The control's size as containers count it: in units of 1/100 millimetre (HIMETRIC).
///
/// 420 twips are 740.83 units and count as 741: cut to 740, a container that cuts once more would
/// show 27 pixels instead of 28.
class Extent {
 public:
  void SetHeight(float twips) { size_.cy = UnitsOf(twips); }
  void SetWidth(float twips) { size_.cx = UnitsOf(twips); }

  [[nodiscard]] SIZEL Units() const { return size_; }
  /// In pixels of the screen; 28 by 28 at 96 dots per inch.
  [[nodiscard]] SIZE Pixels() const;

 private:
  [[nodiscard]] static LONG UnitsOf(float twips);

  SIZEL size_{};
};

}  // namespace quorvane::component
