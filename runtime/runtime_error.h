#pragma once

#include <cstdint>

#include "runtime/text.h"

namespace quorvane {

/// The numbers that the system itself raises. A platform's failure may carry any other number.
struct ErrorNumber {
  static constexpr std::int32_t kInvalidProcedureCall = 5;
  static constexpr std::int32_t kOverflow = 6;
  static constexpr std::int32_t kOutOfMemory = 7;
  static constexpr std::int32_t kSubscriptOutOfRange = 9;
  static constexpr std::int32_t kDivisionByZero = 11;
  static constexpr std::int32_t kTypeMismatch = 13;
  static constexpr std::int32_t kInternalError = 51;
  static constexpr std::int32_t kBadFileNumber = 52;
  static constexpr std::int32_t kFileNotFound = 53;
  static constexpr std::int32_t kFileAlreadyOpen = 55;
  static constexpr std::int32_t kDeviceInputOutput = 57;
  static constexpr std::int32_t kFileAlreadyExists = 58;
  static constexpr std::int32_t kDiskFull = 61;
  static constexpr std::int32_t kInputPastEnd = 62;
  static constexpr std::int32_t kTooManyFiles = 67;
  static constexpr std::int32_t kDeviceUnavailable = 68;
  static constexpr std::int32_t kPermissionDenied = 70;
  static constexpr std::int32_t kDiskNotReady = 71;
  static constexpr std::int32_t kPathFileAccess = 75;
  static constexpr std::int32_t kPathNotFound = 76;
  static constexpr std::int32_t kLibraryNotFound = 48;
  static constexpr std::int32_t kEntryPointNotFound = 453;
};

/// A failure that leaves the current operation at once and goes up to the nearest handler: it is
/// thrown by value.
struct RuntimeError {
  std::int32_t number = 0;
  Text source;
  Text description;
};

/// The standard description of a run-time error number; numbers without one of their own share
/// "Application-defined or object-defined error".
[[nodiscard]] Text StandardDescription(std::int32_t number);

/// Throws the error with its standard description and, unless given, an absent source.
[[noreturn]] void Raise(std::int32_t number, const Text& source = {});

/// The exception being handled as a run-time error. To be called inside a catch block: a
/// RuntimeError comes back unchanged, exhausted memory (or a text beyond the library's limit) as
/// number 7, anything else as number 51.
[[nodiscard]] RuntimeError CurrentRuntimeError();

}  // namespace quorvane
