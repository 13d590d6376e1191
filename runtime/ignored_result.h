#pragma once

namespace quorvane {

/// Says that a call's result is not looked at, on purpose: whatever it is, the operation goes on in
/// the same way. The comment beside the use tells why.
template <class Result>
constexpr void IgnoreResult(const Result& /*result*/) {}

}  // namespace quorvane
