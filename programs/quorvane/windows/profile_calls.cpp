#include "programs/quorvane/profile_calls.h"

namespace quorvane::programs {

Kernel32& ProfileCallsFor(const std::string& /*file*/) { return kernel32(); }

}  // namespace quorvane::programs
