#pragma once

#include "control/automation/com.h"
#include "runtime/runtime_error.h"

// The boundary between run-time errors, which are thrown, and the component model, which knows
// results: no exception leaves a method of an interface.

namespace quorvane::component {

/// A run-time error's number as a result: 1 to 65535 become 0x800A0000 + number, which is where
/// hosts look for numbers of this kind; a number that is itself a failed result stays that result.
[[nodiscard]] HRESULT ResultOf(std::int32_t error_number);

/// The number of a failed result: the inverse of ResultOf().
[[nodiscard]] std::int32_t NumberOf(HRESULT failure);

/// Throws the run-time error that stands for a failed call of a component.
[[noreturn]] void RaiseFailedCall(HRESULT failure);

/// The run-time error that stands for a call of the host that failed just now: with source and
/// description of the thread's error object, which is taken, where the host left one.
[[nodiscard]] RuntimeError FailedCall(HRESULT failure);

/// The exception being handled as a result: exhausted memory is E_OUTOFMEMORY, as the component
/// model asks of what is no member of the control. To be called inside a catch block.
[[nodiscard]] HRESULT CurrentFailure() noexcept;

/// The same, for a member of the control: leaves number, source and description as the thread's
/// error object too, for early-bound callers and for ITypeInfo::Invoke.
[[nodiscard]] HRESULT CurrentMemberFailure() noexcept;

/// Runs the body of a method that can throw.
template <class Body>
[[nodiscard]] HRESULT Guarded(Body body) noexcept {
  try {
    return body();
  } catch (...) {
    return CurrentFailure();
  }
}

/// Runs the body of a member of the control; S_OK unless it throws. The thread's error object is
/// cleared first, since ITypeInfo::Invoke takes whatever hangs there for this call's own.
template <class Body>
[[nodiscard]] HRESULT GuardedMember(Body body) noexcept {
  ::SetErrorInfo(0, nullptr);
  try {
    body();
    return S_OK;
  } catch (...) {
    return CurrentMemberFailure();
  }
}

}  // namespace quorvane::component
