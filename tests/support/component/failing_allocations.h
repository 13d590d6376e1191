#pragma once

#include "tests/support/component/module_under_test.h"

namespace quorvane::component {

/// While it lives, the module's own calls for memory and for TLS indices fail, from the n-th one
/// on, on whatever thread; those of the test, and of the system's libraries, go on as before.
class FailingAllocations {
 public:
  /// `first` counts from 1.
  FailingAllocations(HMODULE module, int first);
  FailingAllocations(const FailingAllocations&) = delete;
  FailingAllocations& operator=(const FailingAllocations&) = delete;

  /// How many calls have failed.
  [[nodiscard]] static int Failures();

 private:
  testing::ReplacedImport replaced_[8];
};

}  // namespace quorvane::component
