#pragma once

namespace quorvane::component {

/// The module lock count: how many objects must keep the module in memory. On any thread.
void LockModule();
void UnlockModule();

/// Locks the module for its life: part of controls, enumerators and windows.
class ModuleLock {
 public:
  ModuleLock() { LockModule(); }
  ModuleLock(const ModuleLock&) = delete;
  ModuleLock& operator=(const ModuleLock&) = delete;
  ~ModuleLock() { UnlockModule(); }
};

/// Locks by the class object (IClassFactory::LockServer), which keep the module, too. An unlock too
/// many does nothing.
void LockServer();
void UnlockServer();

/// Whether either count keeps the module in memory.
[[nodiscard]] bool ModuleIsLocked();

}  // namespace quorvane::component
