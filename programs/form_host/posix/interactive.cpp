// The stand-ins have neither windows nor a component model.

#include "programs/form_host/interactive.h"

#include "programs/common/options.h"

namespace quorvane::programs {

void RequireContainer(const char* option) {
  throw UsageError(std::string(option) + " is for form_host on Windows only");
}

void RunInteractive(const std::string& /*form*/, CallLog& /*log*/) {
  RequireContainer("--interactive");
}

}  // namespace quorvane::programs
