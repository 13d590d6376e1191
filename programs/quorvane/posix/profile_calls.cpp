#include "programs/quorvane/profile_calls.h"

#include <utility>

#include "platform/posix/profile_store.h"
#include "platform/posix/system_text.h"
#include "programs/quorvane/posix/profile_path.h"

namespace quorvane::programs {
namespace {

// The system's calls, but for the two that are given a file's name: that name is not looked at.
class CallsForFile final : public Kernel32 {
 public:
  void SetFile(std::filesystem::path file) { file_ = std::move(file); }

  std::int32_t GetPrivateProfileStringA(const char* section, const char* key,
                                        const char* default_text, char* buffer, std::int32_t size,
                                        const char* /*file*/) override {
    return profile_store::Read(file_, section, key, default_text, buffer, size);
  }
  std::int32_t WritePrivateProfileStringA(const char* section, const char* key, const char* value,
                                          const char* /*file*/) override {
    return profile_store::Write(file_, section, key, value) ? 1 : 0;
  }

  std::int32_t GetVersionExA(OsVersionInformation* information) override {
    return os_.GetVersionExA(information);
  }
  std::int32_t GetSystemDirectoryA(char* buffer, std::int32_t size) override {
    return os_.GetSystemDirectoryA(buffer, size);
  }
  std::int32_t GetProfileStringA(const char* section, const char* key, const char* default_text,
                                 char* buffer, std::int32_t size) override {
    return os_.GetProfileStringA(section, key, default_text, buffer, size);
  }
  std::int32_t WriteProfileStringA(const char* section, const char* key,
                                   const char* value) override {
    return os_.WriteProfileStringA(section, key, value);
  }
  std::int32_t lstrlenA(Address32 text) override { return os_.lstrlenA(text); }
  Address32 LocalFree(Address32 memory) override { return os_.LocalFree(memory); }
  void RtlMoveMemory(void* destination, const void* source, std::uint32_t length) override {
    os_.RtlMoveMemory(destination, source, length);
  }
  void RtlMoveMemory(void* destination, Address32 source, std::uint32_t length) override {
    os_.RtlMoveMemory(destination, source, length);
  }

 private:
  Kernel32& os_ = kernel32();
  std::filesystem::path file_;
};

}  // namespace

std::filesystem::path ProfilePath(const std::string& name) {
  return profile_store::PlaceOf(FileNameFrom(name).Characters());
}

Kernel32& ProfileCallsFor(const std::string& file) {
  static CallsForFile calls;
  calls.SetFile(ProfilePath(file));
  return calls;
}

}  // namespace quorvane::programs
