#include "platform/posix/file_errors.h"

#include <array>
#include <cerrno>
#include <utility>

#include "runtime/runtime_error.h"

namespace quorvane {

std::int32_t FileErrorNumber(int system_code) {
  constexpr auto kNumbers = std::to_array<std::pair<int, std::int32_t>>({
      {ENOENT, ErrorNumber::kFileNotFound},      {ENOTDIR, ErrorNumber::kPathNotFound},
      {EMFILE, ErrorNumber::kTooManyFiles},      {ENFILE, ErrorNumber::kTooManyFiles},
      {EAGAIN, ErrorNumber::kPermissionDenied},  {EBUSY, ErrorNumber::kPermissionDenied},
      {ETXTBSY, ErrorNumber::kPermissionDenied}, {EROFS, ErrorNumber::kPermissionDenied},
      {ENOMEM, ErrorNumber::kOutOfMemory},       {EBADF, ErrorNumber::kBadFileNumber},
      {EINVAL, ErrorNumber::kBadFileNumber},     {ENAMETOOLONG, ErrorNumber::kBadFileNumber},
      {EIO, ErrorNumber::kDeviceInputOutput},    {EEXIST, ErrorNumber::kFileAlreadyExists},
      {ENOSPC, ErrorNumber::kDiskFull},          {EDQUOT, ErrorNumber::kDiskFull},
      {ENODEV, ErrorNumber::kDeviceUnavailable}, {ENXIO, ErrorNumber::kDeviceUnavailable},
      {ENOMEDIUM, ErrorNumber::kDiskNotReady},
  });
  for (const auto& [code, number] : kNumbers) {
    if (code == system_code) return number;
  }
  return ErrorNumber::kPathFileAccess;  // EACCES, EPERM, EISDIR and ELOOP among them
}

void RaiseFileError(int system_code) { Raise(FileErrorNumber(system_code)); }

}  // namespace quorvane
