#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/advapi32.h"
#include "platform/iphlpapi.h"
#include "platform/kernel32.h"
#include "platform/oleaut32.h"
#include "platform/system_code_page.h"
#include "runtime/boolean16.h"
#include "runtime/byte_array.h"
#include "runtime/tagged_value.h"
#include "runtime/text.h"

/// Exact wrappers of the operating system's facilities. They keep no state between calls.
///
/// Every text that an operation takes as `Text&` goes to the system as an 8-bit copy in the code
/// page and comes back: what the page cannot hold is changed in the caller's text afterwards, see
/// CallWithAnsi(). Lengths count 16-bit characters. The platform libraries and the code page come
/// last and default to the system's own.
namespace quorvane::basAPI_api {

// --- Platform and system directory: basAPI_api_system.cpp

/// The family of the operating system: "Win32s" for platform id 0, "Windows 95" for 1, and "Windows
/// NT" for every other one. Versions do not count. A system call that fails is not noticed and
/// leaves the id 0. The word is a literal, good for as long as the module. Raises nothing of its
/// own.
[[nodiscard]] std::u16string_view GetOSPlatformName(Kernel32& kernel = kernel32());

/// The system directory without leading and trailing spaces; the empty text when the system gives
/// none, when it needs more than 254 bytes, or after any run-time error. Raises nothing.
[[nodiscard]] Text GetSystemDirectoryPath(Kernel32& kernel = kernel32(),
                                          const CodePage& code_page = systemCodePage());

// --- Registry values: basAPI_api_registry.cpp
//
// `hive` is a predefined key handle, passed on unchanged. Both operations raise nothing.

/// What a read gives: the empty kind, a 32-bit signed integer, or a string.
using RegistryValue = TaggedValue;

/// The value as it is stored:
/// - a string for type 1 (REG_SZ): all bytes but the last one, whatever that is;
/// - a 32-bit signed integer for the types 3 and 4 (REG_BINARY, REG_DWORD): the first four bytes,
///   low byte first; missing ones count as 0 and further ones do not count;
/// - empty when key or value is missing, the type is another, or a query fails;
/// - the empty string after a run-time error, such as a string value of no bytes at all.
/// The key is closed again, except after a run-time error, which leaves it open.
[[nodiscard]] RegistryValue ReadRegistryValue(RegistryHandle hive, Text& key_path, Text& value_name,
                                              Advapi32& advapi = advapi32(),
                                              const CodePage& code_page = systemCodePage());

/// Stores the value's text as type 1, or its 32-bit integer as type 4; creates the key and its
/// parents where missing. True on success. Any other type stores nothing and is a success, too.
///
/// The data size of a text is its count of characters, so a code page that needs more bytes than
/// that cuts it short. A store of type 4 turns the caller's value into the integer, also when it
/// fails. False when the key cannot be made, when the store fails, and after any run-time error
/// (such as a value that is no 32-bit integer); in the last two cases the key stays open for good.
[[nodiscard]] Boolean16 WriteRegistryValue(RegistryHandle hive, Text& key_path, Text& value_name,
                                           TaggedValue& value, std::int32_t value_type,
                                           Advapi32& advapi = advapi32(),
                                           const CodePage& code_page = systemCodePage(),
                                           Oleaut32& oleaut = oleaut32());

// --- Profile strings: basAPI_api_profile.cpp
//
// The reads give the empty text for a missing file, section or key, for a failed call and for an
// empty value alike, and at most the first 255 bytes of a value. A count of the system's that does
// not fit in 16 bits raises overflow (6). Under a multi-byte code page the result is as many
// characters as the value has bytes: the value and zeros (or, at the end of the buffer, spaces)
// behind it.

/// The value of a key in the system's own profile.
[[nodiscard]] Text ReadProfileValue(Text& section, Text& key, Kernel32& kernel = kernel32(),
                                    const CodePage& code_page = systemCodePage());
/// Stores a value in the system's own profile. True when the low 16 bits of the system's result are
/// not all 0. Raises nothing.
[[nodiscard]] Boolean16 WriteProfileValue(Text& section, Text& key, Text& value,
                                          Kernel32& kernel = kernel32(),
                                          const CodePage& code_page = systemCodePage());
/// The value of a key in a named profile file.
[[nodiscard]] Text ReadPrivateProfileValue(Text& section, Text& key, Text& file_name,
                                           Kernel32& kernel = kernel32(),
                                           const CodePage& code_page = systemCodePage());
/// Stores a value in a named profile file. True when the system's result is not 0; a result beyond
/// 16 bits raises overflow (6).
[[nodiscard]] Boolean16 WritePrivateProfileValue(Text& section, Text& key, Text& value,
                                                 Text& file_name, Kernel32& kernel = kernel32(),
                                                 const CodePage& code_page = systemCodePage());

// --- Account: basAPI_api_account.cpp
//
// No operation of this family catches run-time errors.

/// The current account's security identifier without its "-" signs: S-1-5-18 comes as "S1518". The
/// empty text after any failure that the system reports.
[[nodiscard]] Text GetCurrentAccountSidText(Advapi32& advapi = advapi32(),
                                            Kernel32& kernel = kernel32(),
                                            const CodePage& code_page = systemCodePage());

/// The current account's name; the empty text when the call fails or the name has more than 24
/// bytes. Raises invalid procedure call (5) when the system leaves no zero in the buffer.
[[nodiscard]] Text GetCurrentUserName(Advapi32& advapi = advapi32(),
                                      const CodePage& code_page = systemCodePage());

/// The account's security identifier as bytes 1 to n, and its domain. When the account is not found
/// it is the single byte 0 with index 0, and the domain is empty. An empty or absent system name
/// means this system. The call is repeated as long as the system reports that a buffer is too small
/// (last-error code 122) and wants at least one byte for the identifier, even if the call itself
/// succeeded.
[[nodiscard]] ByteArray LookupAccountSidBytes(Text& account_name, Text& domain,
                                              Text system_name = {}, Advapi32& advapi = advapi32(),
                                              const CodePage& code_page = systemCodePage());

/// The usual text of a security identifier without its "-" signs and spaces; the empty text when
/// the system refuses it. Starts at the array's lower bound, whatever that is; raises subscript out
/// of range (9) when there is no element or more than one dimension.
[[nodiscard]] Text SidBytesToText(const ByteArray& sid, Advapi32& advapi = advapi32(),
                                  Kernel32& kernel = kernel32(),
                                  const CodePage& code_page = systemCodePage());

// --- Adapters: basAPI_api_adapters.cpp

/// An ordered list of texts; item 1 is the first element.
using TextList = std::vector<Text>;

/// The hardware address of every network adapter as 12 upper-case hexadecimal digits (the first six
/// bytes, whatever the adapter's own count of them says), the platform's last adapter first.
/// Nothing is left out or compared. An empty list when there is no adapter or the system refuses;
/// no list at all after any run-time error, such as a system without this call, or a chain that
/// leaves its block or runs in a circle. Raises nothing.
[[nodiscard]] std::optional<TextList> GetAdapterAddresses(Iphlpapi& iphlp = iphlpapi(),
                                                          Kernel32& kernel = kernel32());

}  // namespace quorvane::basAPI_api
