#pragma once

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "programs/quorvane/stored_registry.h"

namespace quorvane::programs {

// The .reg files of Windows: "Windows Registry Editor Version 5.00", and the older REGEDIT4.

/// What is no such file; what() names the line.
class RegFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The keys as the text of such a file, version 5.00, in UTF-8 with a line feed at each line's end.
[[nodiscard]] std::string RegFileText(std::span<const RegistryBranch> branches);
/// The text as the file that Windows writes: UTF-16 with its mark, carriage return and line feed.
[[nodiscard]] std::string RegFileBytes(std::string_view text);

/// What a file of either version asks for, in its order. The bytes are UTF-16 behind the mark
/// FF FE, else UTF-8 with or without a mark, else the system's code page. Raises RegFileError.
[[nodiscard]] std::vector<RegistryChange> ParseRegFile(std::string_view bytes);

}  // namespace quorvane::programs
