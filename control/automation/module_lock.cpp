#include "control/automation/module_lock.h"

#include <atomic>

namespace quorvane::component {
namespace {

// Kept: atomic, though a control stays on its thread; those of several threads share the counts,
// and a reference may be given back on any. Pinned by
// Lifetime.TwoThreadsWorkAtOnceEachWithItsOwnSettings.
constinit std::atomic<long> objects{0};
constinit std::atomic<long> server_locks{0};

}  // namespace

void LockModule() { ++objects; }

void UnlockModule() { --objects; }

void LockServer() { ++server_locks; }

void UnlockServer() {
  long present = server_locks;
  while (present > 0 && !server_locks.compare_exchange_weak(present, present - 1)) {
  }
}

bool ModuleIsLocked() { return objects > 0 || server_locks > 0; }

}  // namespace quorvane::component
