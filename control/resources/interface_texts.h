// The interface _SecurityCtrl as text, for compilers and readers.
#pragma once

#include <string>

namespace quorvane::resources {

/// The library in the interface definition language, for those who read or generate code from it.
std::string InterfaceDefinition();

/// A C++ header with the interface as an abstract class, its ids and that of the class.
std::string InterfaceHeader();

/// A C++ header with a base class that leads each property's two slots to its row of
/// control/settings.h.
std::string MembersHeader();

}  // namespace quorvane::resources
