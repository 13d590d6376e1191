// The entry points of the module: the four exported functions and that of the loader.

#include "control/automation/com.h"
#include "control/automation/error_to_hresult.h"
#include "control/automation/module_lock.h"
#include "control/crt/emulated_tls.h"
#include "control/interface/identities.h"
#include "control/module/class_object.h"
#include "control/module/registration.h"
#include "platform/windows/loader_notice.h"

using quorvane::component::AsGuid;
using quorvane::component::Guarded;

STDAPI DllCanUnloadNow() { return quorvane::component::ModuleIsLocked() ? S_FALSE : S_OK; }

STDAPI DllGetClassObject(REFCLSID class_id, REFIID id, void** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  if (class_id != AsGuid(quorvane::identities::kClassId)) return CLASS_E_CLASSNOTAVAILABLE;
  return quorvane::component::ClassObject::Instance().QueryInterface(id, out);
}

STDAPI DllRegisterServer() {
  return Guarded([] { return quorvane::component::Register(); });
}

STDAPI DllUnregisterServer() {
  return Guarded([] { return quorvane::component::Unregister(); });
}

// Kept: the entry function has no work but to pass the notice on, without which each load would
// lose memory and a TLS index of the host. Pinned by
// Lifetime.LosesNothingOver2500RoundsOfLoadThrowAndUnload.
//
// The per-thread records come first, since their end may still use what the other gives back.
extern "C" BOOL WINAPI DllMain(HINSTANCE /*module*/, DWORD reason, void* process_ends) {
  quorvane::OnLoaderNotice(reason, process_ends);
  quorvane::component::EmulatedTlsOnLoaderNotice(reason, process_ends);
  return TRUE;
}
