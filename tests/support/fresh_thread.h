#pragma once

#include <thread>

namespace quorvane::testing {

/// Runs the body on a thread of its own, so that it starts with fresh per-thread data.
template <class Body>
void OnFreshThread(Body body) {
  std::thread(body).join();
}

}  // namespace quorvane::testing
