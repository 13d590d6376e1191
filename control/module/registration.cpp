#include "control/module/registration.h"

#include <vector>

#include "control/automation/strings.h"
#include "control/interface/identities.h"
#include "control/module/registration_entries.h"
#include "platform/windows/module_file.h"

namespace quorvane::component {
namespace {

// --- Keys and values under HKEY_CLASSES_ROOT, of texts only; an absent value name is the key's
// default value.

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

bool KeyExists(const Text& key) { return Key().Open(key, KEY_QUERY_VALUE) == ERROR_SUCCESS; }

// Makes the key where it is missing and stores the text; false when the registry refuses.
bool WriteValue(const Text& key, const Text& value, const Text& data) {
  Key opened;
  if (opened.Create(key) != ERROR_SUCCESS) return false;
  const std::size_t size = (data.Characters().size() + 1) * sizeof(char16_t);
  return ::RegSetValueExW(opened.Handle(), ValueName(value), 0, REG_SZ,
                          reinterpret_cast<const BYTE*>(Wide(data)),
                          static_cast<DWORD>(size)) == ERROR_SUCCESS;
}

// Removes the value, and the key when nothing is left in it. True also when either is not there.
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

// --- The type library, by the system's own calls.

HRESULT RegisterTypeLibrary() {
  const Text file = ModuleFileName();
  ComPtr<ITypeLib> library;
  HRESULT result = ::LoadTypeLibEx(Wide(file), REGKIND_NONE, library.Receive());
  if (SUCCEEDED(result)) result = ::RegisterTypeLib(library.Get(), MutableWide(file), nullptr);
  return SUCCEEDED(result) ? S_OK : SELFREG_E_TYPELIB;
}

HRESULT UnregisterTypeLibrary() {
  const HRESULT result =
      ::UnRegisterTypeLib(AsGuid(identities::kLibraryId), identities::kLibraryMajor,
                          identities::kLibraryMinor, identities::kLocale, SYS_WIN32);
  // When it is not there, the system's answer is a failure, and not one of its own kind.
  const bool is_gone = !KeyExists(TypeLibraryVersionKey());
  return SUCCEEDED(result) || is_gone ? S_OK : SELFREG_E_TYPELIB;
}

}  // namespace

HRESULT Register() {
  if (const HRESULT result = RegisterTypeLibrary(); FAILED(result)) return result;
  for (const RegistrationEntry& entry : OwnEntries(ModuleFileName())) {
    if (!WriteValue(entry.key, entry.value, entry.data)) return SELFREG_E_CLASS;
  }
  return S_OK;
}

// The library last: its removal by the system takes the key of the version along.
HRESULT Unregister() {
  const std::vector<RegistrationEntry> entries = OwnEntries(ModuleFileName());
  bool is_removed = true;
  for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
    if (!RemoveValue(entry->key, entry->value)) is_removed = false;
  }
  const HRESULT library_result = UnregisterTypeLibrary();
  return is_removed ? library_result : SELFREG_E_CLASS;
}

}  // namespace quorvane::component
