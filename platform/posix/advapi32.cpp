#include "platform/advapi32.h"

#include <algorithm>
#include <string>

#include "platform/posix/account.h"
#include "platform/posix/local_memory.h"
#include "platform/posix/registry.h"
#include "platform/posix/system_errors.h"
#include "platform/posix/system_text.h"

namespace quorvane {
namespace {

namespace error = system_error;

// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): as the system keeps it
thread_local std::int32_t last_error = 0;

// Notes the code and gives the result that goes with it.
std::int32_t EndWith(std::int32_t code) {
  last_error = code;
  return code == error::kSuccess ? 1 : 0;
}

class PosixAdvapi32 final : public Advapi32 {
 public:
  std::int32_t RegOpenKeyExA(RegistryHandle hive, const char* path, std::int32_t /*options*/,
                             std::int32_t access, RegistryHandle* key) override {
    return UsersRegistry().Open(hive, path, access, key);
  }
  std::int32_t RegCreateKeyExA(RegistryHandle hive, const char* path, std::int32_t /*reserved*/,
                               const char* /*class_name*/, std::int32_t /*options*/,
                               std::int32_t access, const void* /*security*/, RegistryHandle* key,
                               std::int32_t* disposition) override {
    return UsersRegistry().Create(hive, path, access, key, disposition);
  }
  std::int32_t RegQueryValueExA(RegistryHandle key, const char* name, std::int32_t* /*reserved*/,
                                std::int32_t* type, void* data, std::int32_t* size) override {
    return UsersRegistry().Query(key, name, type, data, size);
  }
  std::int32_t RegSetValueExA(RegistryHandle key, const char* name, std::int32_t /*reserved*/,
                              std::int32_t type, const void* data, std::int32_t size) override {
    return UsersRegistry().Set(key, name, type, data, size);
  }
  std::int32_t RegCloseKey(RegistryHandle key) override { return UsersRegistry().Close(key); }

  std::int32_t GetUserNameA(char* buffer, std::int32_t* size) override {
    const auto user = CurrentUser();
    if (!user) return EndWith(error::kNoneMapped);
    const std::string name = Utf8ToSystemPage(user->name);
    const auto needed = static_cast<std::int32_t>(name.size() + 1);
    const bool fits = buffer != nullptr && *size >= needed;
    *size = needed;
    if (!fits) return EndWith(error::kInsufficientBuffer);
    std::copy_n(name.c_str(), name.size() + 1, buffer);
    return EndWith(error::kSuccess);
  }

  std::int32_t LookupAccountNameA(const char* system, const char* account, void* sid,
                                  std::int32_t* sid_size, char* domain, std::int32_t* domain_size,
                                  std::int32_t* account_type) override {
    if (system != nullptr && *system != '\0' && !account::IsThisMachine(system)) {
      return EndWith(error::kServerUnavailable);
    }
    const auto found = account::Find(account != nullptr ? account : "");
    if (!found) return EndWith(error::kNoneMapped);
    const auto sid_length = static_cast<std::int32_t>(found->sid.size());
    const auto domain_length = static_cast<std::int32_t>(found->domain.size());
    const bool fits = *sid_size >= sid_length && *domain_size > domain_length;
    *sid_size = sid_length;
    *domain_size = fits ? domain_length : domain_length + 1;
    if (!fits) return EndWith(error::kInsufficientBuffer);
    std::copy_n(found->sid.data(), found->sid.size(), static_cast<char*>(sid));
    std::copy_n(found->domain.c_str(), found->domain.size() + 1, domain);
    *account_type = found->type;
    return EndWith(error::kSuccess);
  }

  std::int32_t ConvertSidToStringSidA(const void* sid, Address32* text) override {
    const auto converted = account::SidText(static_cast<const unsigned char*>(sid));
    if (!converted) return EndWith(error::kInvalidSid);
    *text = localMemory().Add(*converted + '\0');
    return EndWith(error::kSuccess);
  }

  std::int32_t LastError() override { return last_error; }

 private:
  // Made at its first use, not where the library is asked for: finding the user's folder can fail.
  static Registry& UsersRegistry() {
    static Registry registry{UserRegistry()};
    return registry;
  }
};

}  // namespace

Advapi32& advapi32() noexcept {
  static PosixAdvapi32 instance;
  return instance;
}

}  // namespace quorvane
