#include "platform/advapi32.h"

#include <algorithm>
#include <array>
#include <functional>
#include <string>

#include "platform/posix/account.h"
#include "platform/posix/handle_table.h"
#include "platform/posix/registry.h"
#include "platform/posix/system_errors.h"
#include "platform/posix/system_text.h"
#include "runtime/utf8.h"

namespace quorvane {
namespace {

namespace error = system_error;

constexpr std::int32_t kQueryValue = 1;
constexpr std::int32_t kSetValue = 2;
constexpr std::int32_t kAllRights = -1;
constexpr std::int32_t kCreatedNewKey = 1;
constexpr std::int32_t kOpenedExistingKey = 2;
constexpr std::size_t kLongestKeyName = 255;
constexpr std::size_t kLongestValueName = 16383;

// By the low bits of the predefined handle, whose top bit is set.
constexpr std::array<std::u16string_view, 6> kHives = {
    u"HKEY_CLASSES_ROOT", u"HKEY_CURRENT_USER",     u"HKEY_LOCAL_MACHINE",
    u"HKEY_USERS",        u"HKEY_PERFORMANCE_DATA", u"HKEY_CURRENT_CONFIG"};

std::optional<std::u16string_view> HiveOf(RegistryHandle handle) {
  const std::uint32_t index = static_cast<std::uint32_t>(handle) - 0x80000000U;
  if (index >= kHives.size() || kHives[index] == u"HKEY_PERFORMANCE_DATA") return std::nullopt;
  return kHives[index];
}

std::u16string NameFrom(const char* bytes) {
  return bytes != nullptr ? FromSystemPage(bytes) : std::u16string();
}

bool HasTooLongName(std::u16string_view path) {
  std::size_t length = 0;
  return std::ranges::any_of(path, [&length](char16_t character) {
    return (length = character == u'\\' ? 0 : length + 1) > kLongestKeyName;
  });
}

// What the operation gives, or the code of a store that fails.
template <class Operation>
std::int32_t Guarded(Operation operation) {
  try {
    return operation();
  } catch (const StoreFailure&) {
    return error::kRegistryIoFailed;
  }
}

// A text without its zero takes the one that stands behind it in the caller's memory.
std::string DataOf(std::int32_t type, const char* data, std::size_t size) {
  const bool is_text = type == 1 || type == 2 || type == 7;
  std::string bytes(data, size);
  if (is_text && size > 0 && data[size - 1] != '\0' && data[size] == '\0') bytes += '\0';
  return bytes;
}

// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): as the system keeps it
thread_local std::int32_t last_error = 0;

// Notes the code and gives the result that goes with it.
std::int32_t EndWith(std::int32_t code) {
  last_error = code;
  return code == error::kSuccess ? 1 : 0;
}

class PosixAdvapi32 final : public Advapi32 {
 public:
  explicit PosixAdvapi32(std::function<RegistryStore()> store) : store_(std::move(store)) {}

  std::int32_t RegOpenKeyExA(RegistryHandle hive, const char* path, std::int32_t /*options*/,
                             std::int32_t access, RegistryHandle* key) override {
    return Guarded([&] { return OpenOrCreate(hive, path, access, key, nullptr); });
  }

  std::int32_t RegCreateKeyExA(RegistryHandle hive, const char* path, std::int32_t /*reserved*/,
                               const char* /*class_name*/, std::int32_t /*options*/,
                               std::int32_t access, const void* /*security*/, RegistryHandle* key,
                               std::int32_t* disposition) override {
    std::int32_t unread = 0;
    std::int32_t* const done = disposition != nullptr ? disposition : &unread;
    return Guarded([&] { return OpenOrCreate(hive, path, access, key, done); });
  }

  std::int32_t RegQueryValueExA(RegistryHandle key, const char* name, std::int32_t* /*reserved*/,
                                std::int32_t* type, void* data, std::int32_t* size) override {
    return Guarded([&]() -> std::int32_t {
      if (data != nullptr && size == nullptr) return error::kInvalidParameter;
      const auto open = Resolve(key);
      if (!open) return error::kInvalidHandle;
      if ((open->access & kQueryValue) == 0) return error::kAccessDenied;
      const RegistryTree tree = store_().Read();
      const StoredValue* const value = tree.Find(open->path, NameFrom(name));
      if (value == nullptr) return error::kFileNotFound;
      const auto length = static_cast<std::int32_t>(value->data.size());
      if (type != nullptr) *type = value->type;
      if (size == nullptr) return error::kSuccess;
      const std::int32_t room = *size;
      *size = length;
      if (data == nullptr) return error::kSuccess;
      if (room < length) return error::kMoreData;
      std::copy(value->data.begin(), value->data.end(), static_cast<char*>(data));
      return error::kSuccess;
    });
  }

  std::int32_t RegSetValueExA(RegistryHandle key, const char* name, std::int32_t /*reserved*/,
                              std::int32_t type, const void* data, std::int32_t size) override {
    return Guarded([&]() -> std::int32_t {
      const auto open = Resolve(key);
      if (!open) return error::kInvalidHandle;
      if ((open->access & kSetValue) == 0) return error::kAccessDenied;
      if (size < 0 || (data == nullptr && size > 0)) return error::kNoAccess;
      const std::u16string value_name = NameFrom(name);
      if (value_name.size() > kLongestValueName) return error::kInvalidParameter;
      const auto* const bytes = static_cast<const char*>(data != nullptr ? data : "");
      const std::string stored = DataOf(type, bytes, static_cast<std::size_t>(size));
      bool is_there = false;
      store_().Change([&](RegistryTree& tree) {
        is_there = tree.Has(open->path);
        if (is_there) tree.Set(open->path, value_name, type, stored);
      });
      return is_there ? error::kSuccess : error::kKeyDeleted;
    });
  }

  std::int32_t RegCloseKey(RegistryHandle key) override {
    return HiveOf(key) || open_keys_.Remove(key) ? error::kSuccess : error::kInvalidHandle;
  }

  std::int32_t GetUserNameA(char* buffer, std::int32_t* size) override {
    const auto user = CurrentUser();
    if (!user) return EndWith(error::kNoneMapped);
    const std::string name = ToSystemPage(FromUtf8(user->name).Characters());
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
  struct OpenKey {
    std::u16string path;
    std::int32_t access = 0;
  };

  std::optional<OpenKey> Resolve(RegistryHandle handle) {
    if (const auto hive = HiveOf(handle)) return OpenKey{std::u16string(*hive), kAllRights};
    return open_keys_.Find(handle);
  }

  std::int32_t OpenOrCreate(RegistryHandle from, const char* path, std::int32_t access,
                            RegistryHandle* opened, std::int32_t* disposition) {
    if (opened == nullptr) return error::kInvalidParameter;
    const auto start = Resolve(from);
    if (!start) return error::kInvalidHandle;
    const std::u16string names = NameFrom(path);
    if (names.starts_with(u'\\')) return error::kBadPathName;
    if (HasTooLongName(names)) return error::kInvalidParameter;
    const std::u16string full_path = start->path + u'\\' + names;
    bool is_new = !store_().Read().Has(full_path);
    if (is_new && disposition == nullptr) return error::kFileNotFound;
    if (is_new) store_().Change([&](RegistryTree& tree) { is_new = tree.Make(full_path); });
    if (disposition != nullptr) *disposition = is_new ? kCreatedNewKey : kOpenedExistingKey;
    *opened = names.empty() && HiveOf(from) ? from : open_keys_.Add({full_path, access});
    return error::kSuccess;
  }

  // Asked at each call, as finding the user's folder can fail.
  std::function<RegistryStore()> store_;
  HandleTable<RegistryHandle, OpenKey> open_keys_;
};

}  // namespace

std::unique_ptr<Advapi32> MakeAdvapi32(const RegistryStore& store) {
  return std::make_unique<PosixAdvapi32>([store] { return store; });
}

Advapi32& advapi32() noexcept {
  static PosixAdvapi32 instance(UserRegistry);
  return instance;
}

}  // namespace quorvane
