#include "programs/quorvane/system_reason.h"

#include <windows.h>

#include "programs/common/windows/system_message.h"

namespace quorvane::programs {

std::string ReasonOf(std::int32_t code) { return SystemMessage(static_cast<unsigned long>(code)); }

std::string ReasonOfProfileFailure(const std::optional<std::string>& /*file*/) {
  return SystemMessage(::GetLastError());
}

}  // namespace quorvane::programs
