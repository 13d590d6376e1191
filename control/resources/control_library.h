// The type library of this module.
#pragma once

#include "control/resources/bytes.h"

namespace quorvane::typelib {

/// The library of identities.h as a file: the interface with its members, its empty source
/// interface, the class, and an alias for each earlier generation of the interface.
Bytes ControlLibrary();

}  // namespace quorvane::typelib
