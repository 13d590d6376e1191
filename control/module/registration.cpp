#include "control/module/registration.h"

#include "control/automation/strings.h"
#include "control/interface/identities.h"
#include "control/module/registration_entries.h"
#include "control/module/registry_key.h"
#include "platform/windows/module_file.h"

namespace quorvane::server {
namespace {

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
  for (const RegistrationEntry& entry : ClassEntries(ModuleFileName())) {
    if (!WriteValue(entry.key, entry.value, entry.data)) return SELFREG_E_CLASS;
  }
  return S_OK;
}

HRESULT Unregister() {
  const std::vector<RegistrationEntry> entries = ClassEntries(ModuleFileName());
  bool is_removed = true;
  for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
    if (!RemoveValue(entry->key, entry->value)) is_removed = false;
  }
  const HRESULT library_result = UnregisterTypeLibrary();
  return is_removed ? library_result : SELFREG_E_CLASS;
}

}  // namespace quorvane::server
