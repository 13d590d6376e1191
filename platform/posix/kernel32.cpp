#include "platform/kernel32.h"

#include <dlfcn.h>
#include <gnu/libc-version.h>
#include <sys/utsname.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "platform/posix/handle_table.h"
#include "platform/posix/profile_store.h"
#include "platform/posix/system_text.h"
#include "runtime/runtime_error.h"
#include "runtime/utf8.h"

namespace quorvane {
namespace {

// Neither of the two old families, so that no caller takes this system for one of theirs.
constexpr std::uint32_t kUnixPlatform = 4;

// The directory that the system's own libraries come from: the one of the C library.
std::string SystemDirectory() {
  Dl_info info{};
  if (::dladdr(reinterpret_cast<const void*>(&::gnu_get_libc_version), &info) == 0 ||
      info.dli_fname == nullptr) {
    return {};
  }
  std::error_code failed;
  const auto library = std::filesystem::canonical(info.dli_fname, failed);
  return failed ? std::string() : library.parent_path().native();
}

class PosixKernel32 final : public Kernel32 {
 public:
  std::int32_t GetVersionExA(OsVersionInformation* information) override {
    utsname system{};
    if (information->dwOSVersionInfoSize != sizeof *information || ::uname(&system) != 0) return 0;
    information->dwPlatformId = kUnixPlatform;
    std::sscanf(system.release, "%u.%u.%u", &information->dwMajorVersion,
                &information->dwMinorVersion, &information->dwBuildNumber);
    std::snprintf(information->szCSDVersion, sizeof information->szCSDVersion, "%.127s",
                  system.release);
    return 1;
  }

  std::int32_t GetSystemDirectoryA(char* buffer, std::int32_t size) override {
    const std::string directory = ToSystemPage(FromUtf8(SystemDirectory()).Characters());
    const auto length = static_cast<std::int32_t>(directory.size());
    if (length == 0) return 0;
    if (length >= size) return length + 1;
    std::copy_n(directory.c_str(), directory.size() + 1, buffer);
    return length;
  }

  std::int32_t GetProfileStringA(const char* section, const char* key, const char* default_text,
                                 char* buffer, std::int32_t size) override {
    return GetPrivateProfileStringA(section, key, default_text, buffer, size, nullptr);
  }
  std::int32_t WriteProfileStringA(const char* section, const char* key,
                                   const char* value) override {
    return WritePrivateProfileStringA(section, key, value, nullptr);
  }
  std::int32_t GetPrivateProfileStringA(const char* section, const char* key,
                                        const char* default_text, char* buffer, std::int32_t size,
                                        const char* file) override {
    return profile_store::Read(profile_store::NamedProfile(file), section, key, default_text,
                               buffer, size);
  }
  std::int32_t WritePrivateProfileStringA(const char* section, const char* key, const char* value,
                                          const char* file) override {
    return profile_store::Write(profile_store::NamedProfile(file), section, key, value) ? 1 : 0;
  }

  std::int32_t lstrlenA(Address32 text) override {
    return static_cast<std::int32_t>(std::strlen(localMemory().Find(text).value_or("").c_str()));
  }
  Address32 LocalFree(Address32 memory) override {
    return localMemory().Remove(memory) ? kNoAddress : memory;
  }

  void RtlMoveMemory(void* destination, const void* source, std::uint32_t length) override {
    if (length > 0) std::memmove(destination, source, length);
  }
  void RtlMoveMemory(void* destination, Address32 source, std::uint32_t length) override {
    const std::string memory = localMemory().Find(source).value_or("");
    // What would be an access violation where addresses are pointers.
    if (length > memory.size()) Raise(ErrorNumber::kInvalidProcedureCall);
    RtlMoveMemory(destination, memory.data(), length);
  }
};

}  // namespace

Kernel32& kernel32() noexcept {
  static PosixKernel32 instance;
  return instance;
}

}  // namespace quorvane
