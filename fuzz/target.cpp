#include "fuzz/target.h"

#include <cstdio>
#include <cstdlib>

namespace quorvane::fuzz {

std::vector<Target>& Targets() {
  static std::vector<Target> targets;
  return targets;
}

void Require(bool is_right, std::string_view what) {
  if (is_right) return;
  std::fprintf(stderr, "wrong: %.*s\n", static_cast<int>(what.size()), what.data());
  std::abort();
}

}  // namespace quorvane::fuzz
