#pragma once

#include "runtime/text.h"

namespace quorvane::server {

// Values under HKEY_CLASSES_ROOT, of texts only. An absent value name is the key's default value.

[[nodiscard]] bool KeyExists(const Text& key);

/// Makes the key where it is missing and stores the text; false when the registry refuses.
[[nodiscard]] bool WriteValue(const Text& key, const Text& value, const Text& data);

/// Removes the value, and the key when nothing is left in it. True also when either is not there.
[[nodiscard]] bool RemoveValue(const Text& key, const Text& value);

}  // namespace quorvane::server
