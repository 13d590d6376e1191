#pragma once

#include <cstdint>

#include "platform/address32.h"

namespace quorvane {

/// A handle of the registry as its calls carry it: a predefined hive, such as -2147483646 for the
/// machine's, or a key that a call has opened. Only the platform knows what it means.
using RegistryHandle = std::int32_t;

/// Calls of the system's library for the registry and for accounts, under their own names; results
/// are handed back raw.
///
/// Texts are 8-bit, in the system's code page, and end with a zero. Sizes count bytes. The registry
/// calls give 0 for success and the system's error code otherwise; the account calls give non-zero
/// for success and leave their reason in LastError().
class Advapi32 {
 public:
  virtual ~Advapi32() = default;

  /// Opens an existing key below the hive; fails when it is missing. The caller closes the key.
  [[nodiscard]] virtual std::int32_t RegOpenKeyExA(RegistryHandle hive, const char* path,
                                                   std::int32_t options, std::int32_t access,
                                                   RegistryHandle* key) = 0;
  /// Opens a key below the hive, or creates it and its missing parents. The caller closes the key.
  [[nodiscard]] virtual std::int32_t RegCreateKeyExA(RegistryHandle hive, const char* path,
                                                     std::int32_t reserved, const char* class_name,
                                                     std::int32_t options, std::int32_t access,
                                                     const void* security, RegistryHandle* key,
                                                     std::int32_t* disposition) = 0;
  /// With null data reports the value's type and size. With data also copies it, if `size` says
  /// that it fits, and reports the size copied; never writes more than `size` bytes.
  [[nodiscard]] virtual std::int32_t RegQueryValueExA(RegistryHandle key, const char* name,
                                                      std::int32_t* reserved, std::int32_t* type,
                                                      void* data, std::int32_t* size) = 0;
  /// Stores `size` bytes under the name. For a text the byte behind them is read, too: the platform
  /// takes it along when it is a zero and the text does not end with one yet.
  [[nodiscard]] virtual std::int32_t RegSetValueExA(RegistryHandle key, const char* name,
                                                    std::int32_t reserved, std::int32_t type,
                                                    const void* data, std::int32_t size) = 0;
  /// Closes a key that was opened or created; 0 for success.
  [[nodiscard]] virtual std::int32_t RegCloseKey(RegistryHandle key) = 0;

  /// Writes the current account's name and its zero into the buffer if `size` says that they fit,
  /// else nothing.
  [[nodiscard]] virtual std::int32_t GetUserNameA(char* buffer, std::int32_t* size) = 0;
  /// Finds the account's security identifier and its domain; a null system name means this system.
  /// Where a buffer is too small the code is 122 and both sizes become the ones needed, that of the
  /// domain with its zero; after success they are the sizes written, that of the domain without it.
  [[nodiscard]] virtual std::int32_t LookupAccountNameA(const char* system, const char* account,
                                                        void* sid, std::int32_t* sid_size,
                                                        char* domain, std::int32_t* domain_size,
                                                        std::int32_t* account_type) = 0;
  /// Hands out the identifier's usual text by its address; fails for an invalid identifier. The
  /// identifier's own count, at most 15, says how many bytes of it are read: 68 at the most. The
  /// caller gives the text back by Kernel32::LocalFree(). Raises library not found (48) or entry
  /// point not found (453) on a system without this call.
  [[nodiscard]] virtual std::int32_t ConvertSidToStringSidA(const void* sid, Address32* text) = 0;

  /// The system's last-error code as it was captured right after the calling thread's latest
  /// account call on this object. The code is that call's own: where the call sets none it is 0.
  [[nodiscard]] virtual std::int32_t LastError() = 0;
};

/// The platform's own, on Linux its stand-in. It lives as long as the program.
[[nodiscard]] Advapi32& advapi32() noexcept;

}  // namespace quorvane
