#pragma once

#include "control/automation/com.h"

namespace quorvane::component {

/// Registers the type library from the module's own resource, then the control class under the
/// standard component keys, at the module's present place. May be repeated. SELFREG_E_TYPELIB or
/// SELFREG_E_CLASS when one of the two fails; what was written until then stays.
[[nodiscard]] HRESULT Register();

/// Removes what Register() wrote and nothing else: a key in which others have left something stays.
/// May be repeated, and when nothing is registered. Both parts are tried; SELFREG_E_CLASS or
/// SELFREG_E_TYPELIB when one cannot be removed.
[[nodiscard]] HRESULT Unregister();

}  // namespace quorvane::component
