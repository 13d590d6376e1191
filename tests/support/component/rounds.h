#pragma once

#include <cstdlib>

namespace quorvane::component {

/// A count that the environment may set: `./test --soak` asks for many more than `./test`.
inline int Rounds(const char* variable, int usual) {
  const char* const wanted = std::getenv(variable);
  return wanted != nullptr ? std::atoi(wanted) : usual;
}

}  // namespace quorvane::component
