#pragma once

#include <vector>

#include "control/interface/guid.h"
#include "runtime/text.h"

// What registers the component, as plain data: the module's own registration writes it, and on the
// building machine it goes into the installer.

namespace quorvane::component {

/// The system's own marshallers of a dual interface and of an event interface.
inline constexpr identities::Guid kInterfaceMarshaller =
    identities::ParseGuid("00020424-0000-0000-C000-000000000046");
inline constexpr identities::Guid kEventMarshaller =
    identities::ParseGuid("00020420-0000-0000-C000-000000000046");

/// One value under HKEY_CLASSES_ROOT; an absent value name is the key's default value.
struct RegistrationEntry {
  Text key;
  Text value;
  Text data;
};

/// What the module in `module_file` writes itself, a key before those below it: the control class;
/// the type library for hosts, and for the system's marshaller, that name no locale or another than
/// its own; and the earlier interfaces, with the library by which they are marshalled.
[[nodiscard]] std::vector<RegistrationEntry> OwnEntries(const Text& module_file);

/// What the entries of one interface name: who marshals it, by which version of which library.
struct Marshalling {
  identities::Guid marshaller{};
  identities::Guid library{};
  Text version;
};

/// Appends what registers an interface.
void AppendInterface(const identities::Guid& id, const char* name, const Marshalling& by,
                     std::vector<RegistrationEntry>& entries);

/// What the system's registration of the type library writes for the module in `module_file`, whose
/// folder is `folder`, beside OwnEntries. The module leaves that to the system; an installer has to
/// write it itself. Not in the module.
[[nodiscard]] std::vector<RegistrationEntry> TypeLibraryEntries(const Text& module_file,
                                                                const Text& folder);

/// The key of the type library's version, which the system writes in hexadecimal.
[[nodiscard]] Text TypeLibraryVersionKey();

/// An id in the form of the registry: capitals in braces.
[[nodiscard]] Text IdText(const identities::Guid& id);

}  // namespace quorvane::component
