#pragma once

#include "tests/support/component/com.h"

namespace quorvane::component {

/// While it lives, the module's own calls for memory and for TLS indices fail, from the n-th one
/// on, on whatever thread; those of the test, and of the system's libraries, go on as before. It
/// puts itself in the place of the entry points in the module's table of imports.
class FailingAllocations {
 public:
  /// `first` counts from 1.
  FailingAllocations(HMODULE module, int first);
  FailingAllocations(const FailingAllocations&) = delete;
  FailingAllocations& operator=(const FailingAllocations&) = delete;
  ~FailingAllocations();

  /// How many calls have failed.
  [[nodiscard]] static int Failures();

 private:
  HMODULE module_;
};

}  // namespace quorvane::component
