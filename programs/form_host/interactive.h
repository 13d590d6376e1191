#pragma once

#include <string>

#include "programs/form_host/call_log.h"

// What only a real container has: calls that a log can tell, and a window for people. Answered in
// windows/; posix/ refuses.
namespace quorvane::programs {

/// Raises UsageError for an option that wants a real container where there is none.
void RequireContainer(const char* option);

/// Shows the form in a window until its user closes that; an empty name is a new form. All calls
/// between container and control go into the log. Raises FormFileError when the form cannot be
/// opened, and the system's run-time error when no window can be made.
void RunInteractive(const std::string& form, CallLog& log);

}  // namespace quorvane::programs
