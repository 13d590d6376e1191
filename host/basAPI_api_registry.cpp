#include <algorithm>
#include <array>
#include <vector>

#include "host/basAPI_api.h"
#include "platform/conversions.h"
#include "runtime/ansi_text.h"
#include "runtime/ignored_result.h"
#include "runtime/integers.h"
#include "runtime/text_parts.h"

namespace quorvane::basAPI_api {
namespace {

constexpr std::int32_t kString = 1;
constexpr std::int32_t kBinary = 3;
constexpr std::int32_t kDword = 4;

// KEY_READ: the standard read rights, notify, enumerate sub-keys, query values.
constexpr std::int32_t kReadAccess = 131097;
// Kept: the six rights of keys alone, without the standard rights of KEY_ALL_ACCESS. Accounts that
// may not have those can still write. Pinned by WriteRegistryValue.AsksForTheSixKeyRightsAlone.
constexpr std::int32_t kWriteAccess = 63;

// What a first query reports, and where further queries leave their sizes.
struct ReportedValue {
  std::int32_t type = 0;
  std::int32_t size = 0;
};

std::int32_t Query(RegistryHandle key, Text& value_name, ReportedValue& reported, void* data,
                   Advapi32& advapi, const CodePage& code_page) {
  return CallWithAnsi(
      code_page,
      [&](char* name) {
        return advapi.RegQueryValueExA(key, name, nullptr, &reported.type, data, &reported.size);
      },
      value_name);
}

// Kept: the buffer is one character shorter than the reported size, so the last byte falls on the
// copy's own final zero and is lost, whether it is a zero or not. What other programs store with
// its zero comes out right; what they store without it loses its last character.
// Pinned by ReadRegistryValue.DropsTheLastByteUnseen.
RegistryValue QueryString(RegistryHandle key, Text& value_name, ReportedValue reported,
                          Advapi32& advapi, const CodePage& code_page) {
  // Kept: a size of 0 makes this count -1, which raises; a caller can tell the empty text that
  // comes of it from the empty kind. Pinned by
  // ReadRegistryValue.GivesTheEmptyTextForAStringOfNoBytes.
  Text buffer = RepeatedCharacter(CheckedSubtract(reported.size, std::int32_t{1}), u'\0');
  const std::int32_t result = CallWithAnsi(
      code_page,
      [&](char* name, char* data) {
        return advapi.RegQueryValueExA(key, name, nullptr, &reported.type, data, &reported.size);
      },
      value_name, buffer);
  if (result != 0) return {};
  return FirstCharacters(std::move(buffer), reported.size);
}

// The call is given the size that the value has, not the integer's own, so the destination has room
// for that: a longer value gives its first four bytes.
RegistryValue QueryInteger(RegistryHandle key, Text& value_name, ReportedValue reported,
                           Advapi32& advapi, const CodePage& code_page) {
  if (reported.size < 0) Raise(ErrorNumber::kOverflow);
  std::array<std::uint8_t, 4> integer{};
  std::vector<std::uint8_t> longer;
  std::uint8_t* destination = integer.data();
  if (static_cast<std::size_t>(reported.size) > integer.size()) {
    longer.resize(static_cast<std::size_t>(reported.size));
    destination = longer.data();
  }
  if (Query(key, value_name, reported, destination, advapi, code_page) != 0) return {};
  const std::uint32_t bits = std::uint32_t{destination[0]} | std::uint32_t{destination[1]} << 8 |
                             std::uint32_t{destination[2]} << 16 |
                             std::uint32_t{destination[3]} << 24;
  return static_cast<std::int32_t>(bits);
}

RegistryValue QueryByType(RegistryHandle key, Text& value_name, Advapi32& advapi,
                          const CodePage& code_page) {
  ReportedValue reported;
  if (Query(key, value_name, reported, nullptr, advapi, code_page) != 0) return {};
  if (reported.type == kString) return QueryString(key, value_name, reported, advapi, code_page);
  // Kept: a binary value is read as an integer, just like a DWORD; a caller cannot tell the two
  // apart. Pinned by ReadRegistryValue.ReadsBinaryAsALittleEndianInteger and
  // ReadRegistryValue.TakesTheFirstFourBytesOfALongerOne.
  if (reported.type == kBinary || reported.type == kDword) {
    return QueryInteger(key, value_name, reported, advapi, code_page);
  }
  return {};
}

RegistryValue ReadValue(RegistryHandle hive, Text& key_path, Text& value_name, Advapi32& advapi,
                        const CodePage& code_page) {
  RegistryHandle key = 0;
  const std::int32_t opened = CallWithAnsi(
      code_page, [&](char* path) { return advapi.RegOpenKeyExA(hive, path, 0, kReadAccess, &key); },
      key_path);
  if (opened != 0) return {};
  RegistryValue value = QueryByType(key, value_name, advapi, code_page);
  IgnoreResult(advapi.RegCloseKey(key));  // the value is there, whatever becomes of the key
  return value;
}

bool StoreString(RegistryHandle key, Text& value_name, const TaggedValue& value, Advapi32& advapi,
                 const CodePage& code_page, Oleaut32& oleaut) {
  Text text = ToText(value, oleaut);
  // Kept: the size counts characters and takes in no zero. So a code page with more bytes than that
  // cuts the data, and what is read back may end in half a character. Pinned by
  // WriteRegistryValue.CutsDataShortUnderAMultiByteCodePage and
  // JapaneseRegistry.LosesHalfACharacterOfATextStoredWithoutItsZero.
  const std::int32_t size = text.Length();
  return CallWithAnsi(
             code_page,
             [&](char* name, char* data) {
               return advapi.RegSetValueExA(key, name, 0, kString, data, size);
             },
             value_name, text) == 0;
}

bool StoreInteger(RegistryHandle key, Text& value_name, TaggedValue& value, Advapi32& advapi,
                  const CodePage& code_page, Oleaut32& oleaut) {
  const std::int32_t integer = ToInteger32(value, oleaut);
  const std::int32_t result = CallWithAnsi(
      code_page,
      [&](char* name) {
        return advapi.RegSetValueExA(key, name, 0, kDword, &integer, sizeof integer);
      },
      value_name);
  // Kept: the caller's value becomes the integer, stored or not, so its variable changes kind.
  // Pinned by WriteRegistryValue.TurnsTheCallersValueIntoTheIntegerStoredOrNot.
  value = integer;
  return result == 0;
}

bool StoreByType(RegistryHandle key, Text& value_name, TaggedValue& value, std::int32_t value_type,
                 Advapi32& advapi, const CodePage& code_page, Oleaut32& oleaut) {
  if (value_type == kString) return StoreString(key, value_name, value, advapi, code_page, oleaut);
  if (value_type == kDword) return StoreInteger(key, value_name, value, advapi, code_page, oleaut);
  // Kept: any other type, binary included, makes the key, stores nothing and is a success. A
  // caller that wants no more than the key gets it so. Pinned by
  // WriteRegistryValue.StoresNothingForAnyOtherTypeAndSucceeds.
  return true;
}

bool WriteValue(RegistryHandle hive, Text& key_path, Text& value_name, TaggedValue& value,
                std::int32_t value_type, Advapi32& advapi, const CodePage& code_page,
                Oleaut32& oleaut) {
  constexpr std::int32_t kNonVolatile = 0;
  RegistryHandle key = 0;
  std::int32_t unread_disposition = 0;
  const std::int32_t created = CallWithAnsi(
      code_page,
      [&](char* path) {
        return advapi.RegCreateKeyExA(hive, path, 0, nullptr, kNonVolatile, kWriteAccess, nullptr,
                                      &key, &unread_disposition);
      },
      key_path);
  if (created != 0) return false;
  // Kept: the key stays open for good after a failed store, as it does after a run-time error;
  // a host that counts its handles sees it. Pinned by
  // WriteRegistryValue.LeavesTheKeyOpenAfterAFailedStore.
  if (!StoreByType(key, value_name, value, value_type, advapi, code_page, oleaut)) return false;
  IgnoreResult(advapi.RegCloseKey(key));  // the value is stored, whatever becomes of the key
  return true;
}

}  // namespace

RegistryValue ReadRegistryValue(RegistryHandle hive, Text& key_path, Text& value_name,
                                Advapi32& advapi, const CodePage& code_page) {
  try {
    return ReadValue(hive, key_path, value_name, advapi, code_page);
  } catch (...) {
    // Kept: the empty text, not the empty kind, and an opened key stays open; a caller can tell
    // the two apart. Pinned by ReadRegistryValue.LeavesTheKeyOpenAfterARunTimeError.
    return Text(u"");
  }
}

Boolean16 WriteRegistryValue(RegistryHandle hive, Text& key_path, Text& value_name,
                             TaggedValue& value, std::int32_t value_type, Advapi32& advapi,
                             const CodePage& code_page, Oleaut32& oleaut) {
  try {
    return ToBoolean16(
        WriteValue(hive, key_path, value_name, value, value_type, advapi, code_page, oleaut));
  } catch (...) {
    return kFalse;
  }
}

}  // namespace quorvane::basAPI_api
