#include "platform/posix/file_errors.h"

#include <cerrno>

#include "runtime/runtime_error.h"

namespace quorvane {

std::int32_t FileErrorNumber(int system_code) {
  constexpr struct {
    int system_code;
    std::int32_t number;
  } kNumbers[] = {
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
  };
  for (const auto& known : kNumbers) {
    if (known.system_code == system_code) return known.number;
  }
  return ErrorNumber::kPathFileAccess;  // EACCES, EPERM, EISDIR and ELOOP among them
}

void RaiseFileError(int system_code) { Raise(FileErrorNumber(system_code)); }

}  // namespace quorvane
