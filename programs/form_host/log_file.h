#pragma once

#include <fstream>
#include <string>

#include "programs/form_host/call_log.h"

namespace quorvane::programs {

/// A file that holds a log of calls, UTF-8 without a byte order mark. Each piece is handed to the
/// system at once, so that nothing is missing after a crash.
class LogFile {
 public:
  /// Makes the file, or empties it. Raises FormFileError, "FILE: ..." when it cannot be made.
  explicit LogFile(const std::string& file);
  LogFile(const LogFile&) = delete;
  LogFile& operator=(const LogFile&) = delete;
  ~LogFile() = default;

  /// From now on the log is written here as well; the file must outlive the last call.
  void Follow(CallLog& log);
  /// Raises FormFileError when a piece could not be written (a full disk).
  void RaiseFailure() const;

 private:
  std::string file_;
  std::ofstream out_;
};

}  // namespace quorvane::programs
