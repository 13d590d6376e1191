#pragma once

#include <filesystem>
#include <string>

#include "runtime/text.h"

namespace quorvane::programs {

/// The name of a file on the command line as the library's operations take it. On Linux every name
/// has one, also where its bytes are no UTF-8.
[[nodiscard]] Text FileNameOf(const std::string& word);

/// The same name as the C++ library takes it.
[[nodiscard]] inline std::filesystem::path PathOf(const std::string& word) {
  return std::u8string(word.begin(), word.end());
}

}  // namespace quorvane::programs
