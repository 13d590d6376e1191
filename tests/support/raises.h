#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <ostream>

#include "runtime/runtime_error.h"
#include "runtime/utf8.h"

namespace quorvane {

// GoogleTest finds these by the namespace of the type.
inline void PrintTo(const Text& text, std::ostream* out) {
  *out << (text.IsAbsent() ? "(absent)" : '"' + ToUtf8(text) + '"');
}

}  // namespace quorvane

namespace quorvane::testing {

/// The run-time error that the body raises, or nothing when it ends without one.
template <class Body>
std::optional<RuntimeError> ErrorOf(Body body) {
  try {
    body();
  } catch (const RuntimeError& error) {
    return error;
  }
  return std::nullopt;
}

/// The number of the run-time error that the body raises, or 0 when it ends without one.
template <class Body>
std::int32_t ErrorNumberOf(Body body) {
  const std::optional<RuntimeError> error = ErrorOf(body);
  return error ? error->number : 0;
}

}  // namespace quorvane::testing
