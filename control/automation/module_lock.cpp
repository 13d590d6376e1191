#include "control/automation/module_lock.h"

#include <atomic>

namespace quorvane::server {
namespace {

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

}  // namespace quorvane::server
