// The type libraries of this module.
#pragma once

#include "control/resources/bytes.h"

namespace quorvane::typelib {

/// The library of identities.h as a file: the interface with its members, its empty source
/// interface, the class, and an alias for each earlier generation of the interface.
Bytes ControlLibrary();

/// The library by which the system's marshaller takes the earlier interfaces from apartment to
/// apartment. To it an alias is no interface, so here each of them is one: an heir of the present
/// interface that adds nothing.
Bytes MarshallingLibrary();

}  // namespace quorvane::typelib
