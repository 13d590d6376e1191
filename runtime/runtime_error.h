#pragma once

#include <cstdint>

#include "runtime/text.h"

namespace quorvane {

/// The numbers that the system itself raises. A platform's failure may carry any other number.
struct ErrorNumber {
  static constexpr std::int32_t kInvalidProcedureCall = 5;  ///< an argument of no use
  static constexpr std::int32_t kOverflow = 6;              ///< a result beyond its 16 or 32 bits
  static constexpr std::int32_t kOutOfMemory = 7;           ///< out of memory
  static constexpr std::int32_t kSubscriptOutOfRange = 9;   ///< outside the bounds, or no bounds
  static constexpr std::int32_t kDivisionByZero = 11;       ///< division by zero
  static constexpr std::int32_t kTypeMismatch = 13;     ///< a value without a meaning in that kind
  static constexpr std::int32_t kInternalError = 51;    ///< what nothing else stands for
  static constexpr std::int32_t kBadFileNumber = 52;    ///< bad file number, or bad file name
  static constexpr std::int32_t kFileNotFound = 53;     ///< file not found
  static constexpr std::int32_t kFileAlreadyOpen = 55;  ///< file already open
  static constexpr std::int32_t kDeviceInputOutput = 57;    ///< device input/output error
  static constexpr std::int32_t kFileAlreadyExists = 58;    ///< file already exists
  static constexpr std::int32_t kDiskFull = 61;             ///< disk full
  static constexpr std::int32_t kInputPastEnd = 62;         ///< input past end of file
  static constexpr std::int32_t kTooManyFiles = 67;         ///< too many files
  static constexpr std::int32_t kDeviceUnavailable = 68;    ///< device unavailable
  static constexpr std::int32_t kPermissionDenied = 70;     ///< also for a file in use
  static constexpr std::int32_t kDiskNotReady = 71;         ///< disk not ready
  static constexpr std::int32_t kPathFileAccess = 75;       ///< path/file access error
  static constexpr std::int32_t kPathNotFound = 76;         ///< path not found
  static constexpr std::int32_t kLibraryNotFound = 48;      ///< error in loading a library
  static constexpr std::int32_t kEntryPointNotFound = 453;  ///< of a library that is there
};

/// A failure that leaves the current operation at once and goes up to the nearest handler: it is
/// thrown by value.
struct RuntimeError {
  std::int32_t number = 0;  ///< see ErrorNumber
  Text source;              ///< who raised it; may be absent
  Text description;         ///< for people
};

/// The standard description of a run-time error number; numbers without one of their own share
/// "Application-defined or object-defined error".
[[nodiscard]] Text StandardDescription(std::int32_t number);

/// Throws the error with its standard description and an absent source.
[[noreturn]] void Raise(std::int32_t number);
/// The same with a source.
[[noreturn]] void Raise(std::int32_t number, const Text& source);

/// The exception being handled as a run-time error. To be called inside a catch block: a
/// RuntimeError comes back unchanged, exhausted memory (or a text beyond the library's limit) as
/// number 7, anything else as number 51.
[[nodiscard]] RuntimeError CurrentRuntimeError();

}  // namespace quorvane
