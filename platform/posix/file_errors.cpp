#include "platform/posix/file_errors.h"

#include <cerrno>

#include "runtime/runtime_error.h"

namespace quorvane {

std::int32_t FileErrorNumber(int system_code) {
  switch (system_code) {
    case ENOENT:
      return ErrorNumber::kFileNotFound;
    case ENOTDIR:
      return ErrorNumber::kPathNotFound;
    case EMFILE:
    case ENFILE:
      return ErrorNumber::kTooManyFiles;
    case EAGAIN:
    case EBUSY:
    case ETXTBSY:
    case EROFS:
      return ErrorNumber::kPermissionDenied;
    case ENOMEM:
      return ErrorNumber::kOutOfMemory;
    case EBADF:
    case EINVAL:
    case ENAMETOOLONG:
      return ErrorNumber::kBadFileNumber;
    case EIO:
      return ErrorNumber::kDeviceInputOutput;
    case EEXIST:
      return ErrorNumber::kFileAlreadyExists;
    case ENOSPC:
    case EDQUOT:
      return ErrorNumber::kDiskFull;
    case ENODEV:
    case ENXIO:
      return ErrorNumber::kDeviceUnavailable;
    case ENOMEDIUM:
      return ErrorNumber::kDiskNotReady;
    default:  // EACCES, EPERM, EISDIR and ELOOP among them
      return ErrorNumber::kPathFileAccess;
  }
}

void RaiseFileError(int system_code) { Raise(FileErrorNumber(system_code)); }

}  // namespace quorvane
