#include "programs/quorvane/findings.h"

#include <curl/curl.h>
#include <gnu/libc-version.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "platform/posix/account.h"
#include "platform/posix/profile_store.h"
#include "platform/posix/registry.h"
#include "platform/posix/system_locale.h"

namespace quorvane::programs {
namespace {

std::string System() {
  struct utsname name {};
  const std::string libc = std::string(", glibc ") + ::gnu_get_libc_version();
  return ::uname(&name) == 0 ? std::string(name.sysname) + " " + name.release + libc
                             : "unknown" + libc;
}

// The nearest folder above that is there: what is missing below it would be made in it.
std::filesystem::path FolderThatIsThere(std::filesystem::path path) {
  std::error_code unknown;
  while (!std::filesystem::exists(path, unknown) && path.has_relative_path())
    path = path.parent_path();
  return path;
}

Finding Place(const std::string& name, const std::filesystem::path& file) {
  const std::string start = file.string() + ": ";
  std::error_code unknown;
  if (!std::filesystem::exists(std::filesystem::symlink_status(file, unknown))) {
    const std::filesystem::path folder = FolderThatIsThere(file);
    if (::access(folder.c_str(), W_OK | X_OK) == 0) return {name, start + "not there yet"};
    return {name, start + "cannot be made, " + folder.string() + ": " + std::strerror(errno), true};
  }
  if (!std::filesystem::is_regular_file(file, unknown)) return {name, start + "is no file", true};
  if (::access(file.c_str(), R_OK) != 0)
    return {name, start + "cannot be read: " + std::strerror(errno), true};
  const std::filesystem::path folder = file.parent_path();
  for (const auto& written : {file, folder}) {
    if (::access(written.c_str(), W_OK) != 0) {
      return {name, start + "can be read only, " + written.string() + ": " + std::strerror(errno),
              true};
    }
  }
  return {name, start + "can be read and written"};
}

Finding RegistryPlace() {
  Finding place = Place("registry", DataFolder() / "registry.txt");
  if (place.is_fault) return place;
  try {
    const std::size_t keys = UserRegistry().Read().KeysFrom(u"").size();
    return {place.name, place.value + ", " + std::to_string(keys) + " keys"};
  } catch (const StoreFailure& failure) {
    return {place.name, failure.what(), true};
  }
}

}  // namespace

std::vector<Finding> SystemFindings() {
  return {
      {"system", System()},
      {"web client", ::curl_version()},
      {"code page", "1252, unless a command is told another"},
      {"locale", systemLocale().name()},
      RegistryPlace(),
      Place("profile", profile_store::NamedProfile(nullptr)),
  };
}

}  // namespace quorvane::programs
