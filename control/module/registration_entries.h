#pragma once

#include <vector>

#include "runtime/text.h"

namespace quorvane::server {

/// One value under HKEY_CLASSES_ROOT; an absent value name is the key's default value.
struct RegistrationEntry {
  Text key;
  Text value;
  Text data;
};

/// What registers the control class of the module in `module_file`: a key stands before those below
/// it.
[[nodiscard]] std::vector<RegistrationEntry> ClassEntries(const Text& module_file);

/// The key of the type library's version, which the system writes in hexadecimal.
[[nodiscard]] Text TypeLibraryVersionKey();

}  // namespace quorvane::server
