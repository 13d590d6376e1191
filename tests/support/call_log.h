#pragma once

#include <string>
#include <utility>
#include <vector>

namespace quorvane::testing {

/// What a recording fake writes down: one line per call, the name and its arguments as `Name(a,
/// b)`. Several fakes may share one log, so that the order across them is seen.
using CallLog = std::vector<std::string>;

}  // namespace quorvane::testing
