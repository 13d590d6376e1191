#pragma once

#include <optional>
#include <string>

#include "programs/form_host/windows/com.h"

// What the window asks its user, in boxes of the system.
namespace quorvane::programs {

/// The file of a form to open, which is there, or one to save to; nothing when the user thinks
/// better of it. UTF-8.
[[nodiscard]] std::optional<std::string> AskFormToOpen(HWND window);
[[nodiscard]] std::optional<std::string> AskFormToSave(HWND window, const std::string& present);

enum class Answer { kYes, kNo, kCancel };
[[nodiscard]] Answer AskWhetherToSave(HWND window, const std::string& form);

/// Tells of a failure.
void Tell(HWND window, const std::string& message);

/// The exception being handled, in words.
[[nodiscard]] std::string DescribeFailure();

}  // namespace quorvane::programs
