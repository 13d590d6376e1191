#pragma once

#include <cstdint>

namespace quorvane::system_error {

// The error codes of the calls that are stood in for here, by the platform's published numbers.
inline constexpr std::int32_t kSuccess = 0;
inline constexpr std::int32_t kFileNotFound = 2;
inline constexpr std::int32_t kAccessDenied = 5;
inline constexpr std::int32_t kInvalidHandle = 6;
inline constexpr std::int32_t kGeneralFailure = 31;
inline constexpr std::int32_t kInvalidParameter = 87;
inline constexpr std::int32_t kBufferOverflow = 111;
inline constexpr std::int32_t kInsufficientBuffer = 122;
inline constexpr std::int32_t kBadPathName = 161;
inline constexpr std::int32_t kNoData = 232;
inline constexpr std::int32_t kMoreData = 234;
inline constexpr std::int32_t kNoAccess = 998;
inline constexpr std::int32_t kRegistryIoFailed = 1016;
inline constexpr std::int32_t kKeyDeleted = 1018;
inline constexpr std::int32_t kNoneMapped = 1332;
inline constexpr std::int32_t kInvalidSid = 1337;
inline constexpr std::int32_t kServerUnavailable = 1722;

}  // namespace quorvane::system_error
