#include "platform/windows/file_errors.h"

#include "platform/windows/os_headers.h"
#include "runtime/runtime_error.h"

namespace quorvane {

std::int32_t FileErrorNumber(unsigned long system_code) {
  switch (system_code) {
    case ERROR_FILE_NOT_FOUND:
      return ErrorNumber::kFileNotFound;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_DIRECTORY:
      return ErrorNumber::kPathNotFound;
    case ERROR_TOO_MANY_OPEN_FILES:
    case ERROR_NO_SYSTEM_RESOURCES:
      return ErrorNumber::kTooManyFiles;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
      return ErrorNumber::kPermissionDenied;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
      return ErrorNumber::kOutOfMemory;
    case ERROR_INVALID_HANDLE:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_BUFFER_OVERFLOW:
    case ERROR_FILENAME_EXCED_RANGE:
      return ErrorNumber::kBadFileNumber;
    case ERROR_CRC:
    case ERROR_SEEK:
    case ERROR_SECTOR_NOT_FOUND:
    case ERROR_READ_FAULT:
    case ERROR_GEN_FAILURE:
    case ERROR_IO_DEVICE:
      return ErrorNumber::kDeviceInputOutput;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
      return ErrorNumber::kFileAlreadyExists;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      return ErrorNumber::kDiskFull;
    case ERROR_HANDLE_EOF:
      return ErrorNumber::kInputPastEnd;
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_UNIT:
    case ERROR_DEV_NOT_EXIST:
      return ErrorNumber::kDeviceUnavailable;
    case ERROR_NOT_READY:
      return ErrorNumber::kDiskNotReady;
    default:  // ERROR_ACCESS_DENIED among them: also what opening a directory gives
      return ErrorNumber::kPathFileAccess;
  }
}

void RaiseLastFileError() { Raise(FileErrorNumber(::GetLastError())); }

}  // namespace quorvane
