#include "programs/quorvane/system_reason.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "platform/posix/profile_store.h"
#include "platform/posix/system_errors.h"
#include "programs/quorvane/posix/profile_path.h"

namespace quorvane::programs {
namespace {

struct Reason {
  std::int32_t code;
  const char* text;
};

constexpr std::array kReasons{
    Reason{system_error::kFileNotFound, "there is no such key"},
    Reason{system_error::kAccessDenied, "access is denied"},
    Reason{system_error::kInvalidHandle, "the hive is not one of the registry's"},
    Reason{system_error::kInvalidParameter, "the name is too long, or not for a key"},
    Reason{system_error::kBadPathName, "the path of the key starts with a \\"},
    Reason{system_error::kRegistryIoFailed, "the registry's file cannot be read or written"},
    Reason{system_error::kKeyDeleted, "the key was deleted meanwhile"},
};

}  // namespace

std::string ReasonOf(std::int32_t code) {
  const auto* const found = std::ranges::find(kReasons, code, &Reason::code);
  return found != kReasons.end() ? found->text : "code " + std::to_string(code);
}

std::string ReasonOfProfileFailure(const std::optional<std::string>& file) {
  const std::filesystem::path path =
      file ? ProfilePath(*file) : profile_store::NamedProfile(nullptr);
  const std::filesystem::path folder = path.parent_path();
  // A file is replaced by a new one beside it, so both must be writable; other reasons, such as a
  // full disk, leave no trace.
  std::error_code unknown;
  if (std::filesystem::is_directory(path, unknown)) return path.string() + " is a directory";
  for (const auto& place : {folder, path}) {
    const bool refused = ::access(place.c_str(), W_OK) != 0;
    if (refused && (place == folder || errno != ENOENT))
      return place.string() + ": " + std::strerror(errno);
  }
  return path.string() + " cannot be replaced";
}

}  // namespace quorvane::programs
