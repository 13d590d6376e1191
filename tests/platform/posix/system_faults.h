#pragma once

#include <cerrno>

#include "tests/support/fault_plan.h"

namespace quorvane::testing {

/// While one lives, the system calls that system_faults.cpp takes the place of fail by its plan.
class SystemFaults {
 public:
  SystemFaults(int failing_call, FaultPlan::Lasts lasts, int error)
      : plan_(failing_call, lasts), error_(error) {
    current_ = this;
  }
  SystemFaults(const SystemFaults&) = delete;
  SystemFaults& operator=(const SystemFaults&) = delete;
  ~SystemFaults() { current_ = nullptr; }

  [[nodiscard]] bool HasStruck() const { return plan_.HasStruck(); }

  /// For the calls: whether this one is to fail, with errno set.
  static bool Strikes() {
    if (current_ == nullptr || !current_->plan_.NextCallFails()) return false;
    errno = current_->error_;
    return true;
  }

 private:
  static inline SystemFaults* current_ = nullptr;
  FaultPlan plan_;
  int error_;
};

/// What one call of the system says of itself, where it is another than it is.
struct OtherSystem {
  bool refuses_leases = false;
  long file_system = 0;               // of statfs(2); 0: the true one
  const char* joined_user = nullptr;  // an account name with a domain in front
  const char* host_name = nullptr;
  int link_type = -1;  // of every adapter, the loop back included; -1: the true ones
  bool hides_adapters = false;
  bool lacks_adapters = false;
  bool skips_pauses = false;
  bool lacks_converters = false;
  bool lacks_user = false;  // the running program's, in the user database
};
inline OtherSystem other_system;

}  // namespace quorvane::testing
