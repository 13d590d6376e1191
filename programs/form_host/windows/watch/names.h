#pragma once

#include <string>

#include "control/automation/com.h"

namespace quorvane::programs {

/// A result by the name that programmers know it by, "E_NOTIMPL"; one without a name in
/// hexadecimal, and with the run-time error's number where it stands for one.
[[nodiscard]] std::string NameOfResult(HRESULT result);

/// An interface by its name: of those that are watched, else as the system's registry has it, else
/// the id itself.
[[nodiscard]] std::string NameOfInterface(REFIID id);

}  // namespace quorvane::programs
