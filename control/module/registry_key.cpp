#include "control/module/registry_key.h"

#include "control/automation/com.h"
#include "control/automation/strings.h"

namespace quorvane::server {
namespace {

class Key {
 public:
  Key() = default;
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  ~Key() {
    if (handle_ != nullptr) ::RegCloseKey(handle_);
  }

  LSTATUS Open(const Text& path, REGSAM access) {
    return ::RegOpenKeyExW(HKEY_CLASSES_ROOT, Wide(path), 0, access, &handle_);
  }
  LSTATUS Create(const Text& path) {
    return ::RegCreateKeyExW(HKEY_CLASSES_ROOT, Wide(path), 0, nullptr, REG_OPTION_NON_VOLATILE,
                             KEY_SET_VALUE, nullptr, &handle_, nullptr);
  }
  [[nodiscard]] HKEY Handle() const { return handle_; }

  [[nodiscard]] bool IsEmpty() const {
    DWORD subkeys = 1;
    DWORD values = 1;
    const LSTATUS result = ::RegQueryInfoKeyW(handle_, nullptr, nullptr, nullptr, &subkeys, nullptr,
                                              nullptr, &values, nullptr, nullptr, nullptr, nullptr);
    return result == ERROR_SUCCESS && subkeys == 0 && values == 0;
  }

 private:
  HKEY handle_ = nullptr;
};

const wchar_t* ValueName(const Text& value) { return value.IsAbsent() ? nullptr : Wide(value); }

bool IsDoneOrMissing(LSTATUS result) {
  return result == ERROR_SUCCESS || result == ERROR_FILE_NOT_FOUND;
}

}  // namespace

bool KeyExists(const Text& key) { return Key().Open(key, KEY_QUERY_VALUE) == ERROR_SUCCESS; }

bool WriteValue(const Text& key, const Text& value, const Text& data) {
  Key opened;
  if (opened.Create(key) != ERROR_SUCCESS) return false;
  const std::size_t size = (data.Characters().size() + 1) * sizeof(char16_t);
  return ::RegSetValueExW(opened.Handle(), ValueName(value), 0, REG_SZ,
                          reinterpret_cast<const BYTE*>(Wide(data)),
                          static_cast<DWORD>(size)) == ERROR_SUCCESS;
}

bool RemoveValue(const Text& key, const Text& value) {
  bool is_empty = false;
  {
    Key opened;
    const LSTATUS result = opened.Open(key, KEY_QUERY_VALUE | KEY_SET_VALUE);
    if (result != ERROR_SUCCESS) return IsDoneOrMissing(result);
    if (!IsDoneOrMissing(::RegDeleteValueW(opened.Handle(), ValueName(value)))) return false;
    is_empty = opened.IsEmpty();
  }
  return !is_empty || IsDoneOrMissing(::RegDeleteKeyW(HKEY_CLASSES_ROOT, Wide(key)));
}

}  // namespace quorvane::server
