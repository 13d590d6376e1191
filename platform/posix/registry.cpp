#include "platform/posix/registry.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "platform/posix/system_errors.h"
#include "platform/posix/system_text.h"

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

std::optional<std::u16string_view> HiveOf(Registry::Handle handle) {
  const std::uint32_t index = static_cast<std::uint32_t>(handle) - 0x80000000U;
  if (index >= kHives.size() || kHives[index] == u"HKEY_PERFORMANCE_DATA") return std::nullopt;
  return kHives[index];
}

std::u16string NameFrom(const char* bytes) {
  return bytes != nullptr ? FromSystemPage(bytes) : std::u16string();
}

bool HasTooLongName(std::u16string_view path) {
  std::size_t length = 0;
  const auto goes_too_far = [&length](char16_t character) {
    return (length = character == u'\\' ? 0 : length + 1) > kLongestKeyName;
  };
  return std::ranges::any_of(path, goes_too_far);
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

bool IsText(std::int32_t type) { return type == 1 || type == 2 || type == 7; }

// A text without its zero takes the one that stands behind it in the caller's memory.
std::string DataOf(std::int32_t type, const char* data, std::size_t size) {
  std::string bytes(data, size);
  if (IsText(type) && size > 0 && data[size - 1] != '\0' && data[size] == '\0') bytes += '\0';
  return bytes;
}

}  // namespace

std::optional<Registry::OpenKey> Registry::Resolve(Handle handle) {
  if (const auto hive = HiveOf(handle)) return OpenKey{std::u16string(*hive), kAllRights};
  return open_keys_.Find(handle);
}

std::int32_t Registry::OpenOrCreate(Handle from, const char* path, std::int32_t access,
                                    Handle* opened, std::int32_t* disposition) {
  if (opened == nullptr) return error::kInvalidParameter;
  const auto start = Resolve(from);
  if (!start) return error::kInvalidHandle;
  const std::u16string names = NameFrom(path);
  if (names.starts_with(u'\\')) return error::kBadPathName;
  if (HasTooLongName(names)) return error::kInvalidParameter;
  const std::u16string full_path = start->path + u'\\' + names;
  bool is_new = !store_.Read().Has(full_path);
  if (is_new && disposition == nullptr) return error::kFileNotFound;
  if (is_new) store_.Change([&](RegistryTree& tree) { is_new = tree.Make(full_path); });
  if (disposition != nullptr) *disposition = is_new ? kCreatedNewKey : kOpenedExistingKey;
  *opened = names.empty() && HiveOf(from) ? from : open_keys_.Add({full_path, access});
  return error::kSuccess;
}

std::int32_t Registry::Open(Handle from, const char* path, std::int32_t access, Handle* opened) {
  return Guarded([&] { return OpenOrCreate(from, path, access, opened, nullptr); });
}

std::int32_t Registry::Create(Handle from, const char* path, std::int32_t access, Handle* opened,
                              std::int32_t* disposition) {
  std::int32_t unread = 0;
  return Guarded([&] {
    return OpenOrCreate(from, path, access, opened, disposition != nullptr ? disposition : &unread);
  });
}

std::int32_t Registry::Query(Handle key, const char* name, std::int32_t* type, void* data,
                             std::int32_t* size) {
  return Guarded([&]() -> std::int32_t {
    if (data != nullptr && size == nullptr) return error::kInvalidParameter;
    const auto open = Resolve(key);
    if (!open) return error::kInvalidHandle;
    if ((open->access & kQueryValue) == 0) return error::kAccessDenied;
    const RegistryTree tree = store_.Read();
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

std::int32_t Registry::Set(Handle key, const char* name, std::int32_t type, const void* data,
                           std::int32_t size) {
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
    store_.Change([&](RegistryTree& tree) {
      is_there = tree.Has(open->path);
      if (is_there) tree.Set(open->path, value_name, type, stored);
    });
    return is_there ? error::kSuccess : error::kKeyDeleted;
  });
}

std::int32_t Registry::Close(Handle key) {
  return HiveOf(key) || open_keys_.Remove(key) ? error::kSuccess : error::kInvalidHandle;
}

}  // namespace quorvane
