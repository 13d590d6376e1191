#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <new>

#include "runtime/runtime_error.h"

namespace quorvane::testing {

/// The program's own operator new, which fails as it is told: failing_memory.cpp takes the place of
/// the library's, so it belongs into programs of its own.
class FailingMemory {
 public:
  /// From the n-th allocation on, counted from 1 and from this call: that one alone fails, or all
  /// that follow, too.
  static void FailAt(int n, bool and_all_later);
  /// No more fails; whether any did.
  static bool Disarm();
  /// All bytes that were ever asked for.
  [[nodiscard]] static std::size_t BytesTaken();
};

/// Calls `attempt` with its n-th allocation failing, alone and then with all later ones, n = 1, 2,
/// 3
/// ..., until a call meets no failure; gives how many met one. `attempt` prepares, calls `arm`,
/// does one operation, calls `disarm`, which tells whether memory ran out, and looks at the result.
template <class Attempt>
int FailEachAllocation(Attempt attempt) {
  constexpr int kMostAllocations = 2000;
  int failures = 0;
  for (const bool and_all_later : {false, true}) {
    bool failed = true;
    for (int n = 1; failed; ++n) {
      if (n == kMostAllocations) {
        ADD_FAILURE() << "no end after " << n;
        return failures;
      }
      failed = false;
      attempt([&] { FailingMemory::FailAt(n, and_all_later); },
              [&] { return failed = FailingMemory::Disarm(); });
      if (failed) ++failures;
    }
  }
  return failures;
}

/// The number of the error that the body raises, without asking for memory: 7 where there was none;
/// 0 when it raises nothing.
template <class Body>
std::int32_t NumberRaised(Body body) {
  try {
    body();
    return 0;
  } catch (const RuntimeError& error) {
    return error.number;
  } catch (const std::bad_alloc&) {
    return ErrorNumber::kOutOfMemory;
  }
}

}  // namespace quorvane::testing
