#pragma once

#include <string>
#include <vector>

namespace quorvane::programs {

/// A line of what `quorvane doctor` tells.
struct Finding {
  std::string name;
  std::string value;
  bool is_fault = false;
};

/// What depends on the system: its version, code page and locale, the libraries behind the calls,
/// the stores with what may be done there. Answered once in posix/ and once in windows/; makes and
/// changes nothing.
[[nodiscard]] std::vector<Finding> SystemFindings();

}  // namespace quorvane::programs
