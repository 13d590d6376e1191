#include "control/automation/module_use.h"

#include <atomic>

namespace quorvane::server {
namespace {

constinit std::atomic<long> uses{0};
constinit std::atomic<long> locks{0};

}  // namespace

void HoldModule() { ++uses; }

void LetGoOfModule() { --uses; }

void LockModule() { ++locks; }

void UnlockModule() {
  long present = locks;
  while (present > 0 && !locks.compare_exchange_weak(present, present - 1)) {
  }
}

bool ModuleIsInUse() { return uses > 0 || locks > 0; }

}  // namespace quorvane::server
