#pragma once

#include "tests/support/component/module_under_test.h"

namespace quorvane::component {

/// While it lives, the module's own calls for memory and for TLS indices fail, from the n-th one
/// on or the n-th one only, on whatever thread; those of the test, and of the system's libraries,
/// go on as before. One at a time.
class FailingAllocations {
 public:
  enum class Lasting { kFromThenOn, kOnce };

  /// `first` counts from 1.
  FailingAllocations(HMODULE module, int first, Lasting lasting = Lasting::kFromThenOn);
  FailingAllocations(const FailingAllocations&) = delete;
  FailingAllocations& operator=(const FailingAllocations&) = delete;

  /// How many calls have failed.
  [[nodiscard]] static int Failures();

 private:
  testing::ReplacedImport replaced_[8];
};

}  // namespace quorvane::component
