#pragma once

namespace quorvane::server {

/// Counts one more, or one less, that must keep the module in memory. On any thread.
void HoldModule();
void LetGoOfModule();

/// Holds the module for its life: part of controls, enumerators and windows.
class ModuleUse {
 public:
  ModuleUse() { HoldModule(); }
  ModuleUse(const ModuleUse&) = delete;
  ModuleUse& operator=(const ModuleUse&) = delete;
  ~ModuleUse() { LetGoOfModule(); }
};

/// Locks of the class object, which hold the module just so. An unlock too many does nothing.
void LockModule();
void UnlockModule();

/// Whether anything holds or locks the module.
[[nodiscard]] bool ModuleIsInUse();

}  // namespace quorvane::server
