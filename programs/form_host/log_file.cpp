#include "programs/form_host/log_file.h"

#include <filesystem>

#include "programs/form_host/form_file.h"

namespace quorvane::programs {

LogFile::LogFile(const std::string& file)
    : file_(file),
      out_(std::filesystem::path(std::u8string(file.begin(), file.end())),
           std::ios::binary | std::ios::trunc) {
  if (!out_) throw FormFileError(file + ": the log cannot be made there");
}

void LogFile::Follow(CallLog& log) {
  log.AddReader(
      [this](std::string_view piece, CallLog::Kind /*kind*/) { out_ << piece << std::flush; });
}

void LogFile::RaiseFailure() const {
  if (!out_) throw FormFileError(file_ + ": the log cannot be written");
}

}  // namespace quorvane::programs
