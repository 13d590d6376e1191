#include "control/module/registration_entries.h"

#include <array>
#include <string>
#include <string_view>

#include "control/interface/identities.h"

namespace quorvane::component {
namespace {

Text Number(std::uint32_t number, std::uint32_t base) {
  std::u16string digits;
  for (; number > 0 || digits.empty(); number /= base)
    digits.insert(digits.begin(), u"0123456789abcdef"[number % base]);
  return digits;
}

Text Ascii(std::string_view characters) {
  return std::u16string(characters.begin(), characters.end());
}

std::uint32_t LastWord(const identities::Guid& id, std::size_t start) {
  std::uint32_t word = 0;
  for (std::size_t i = start; i < start + 4; ++i) word = word << 8 | id.data4[i];
  return word;
}

Text Decimal(std::uint32_t number) { return Number(number, 10); }

Text Version(std::uint32_t major, std::uint32_t minor, std::uint32_t base) {
  return Number(major, base) + u"." + Number(minor, base);
}

Text LibraryVersion(std::uint32_t base) {
  return Version(identities::kLibraryMajor, identities::kLibraryMinor, base);
}

struct ClassEntry {
  const char16_t* key = nullptr;  // below that of the class
  const char16_t* value = nullptr;
  Text data;
};

void AppendClass(const Text& module_file, std::vector<RegistrationEntry>& entries) {
  const Text class_id = IdText(identities::kClassId);
  const Text name = Ascii(identities::kProgId);
  const auto of_class = std::to_array<ClassEntry>({
      {u"", nullptr, name},
      {u"\\InprocServer32", nullptr, module_file},
      {u"\\InprocServer32", u"ThreadingModel", u"Apartment"},
      {u"\\Control", nullptr, u""},
      {u"\\ToolboxBitmap32", nullptr,
       module_file + u", " + Decimal(identities::kToolboxBitmapResource)},
      // The default for all aspects, and the one for the content (DVASPECT_CONTENT).
      {u"\\MiscStatus", nullptr, u"0"},
      {u"\\MiscStatus\\1", nullptr, Decimal(identities::kMiscStatus)},
      {u"\\TypeLib", nullptr, IdText(identities::kLibraryId)},
      {u"\\Version", nullptr, LibraryVersion(10)},
      {u"\\ProgID", nullptr, name},
  });
  entries.push_back({name, {}, name});
  entries.push_back({name + u"\\CLSID", {}, class_id});
  for (const ClassEntry& entry : of_class) {
    entries.push_back({Text(u"CLSID\\") + class_id + entry.key,
                       entry.value != nullptr ? Text(entry.value) : Text(), entry.data});
  }
}

void AppendEarlierInterfaces(const Text& module_file, std::vector<RegistrationEntry>& entries) {
  const Text version = Version(identities::kMarshallingMajor, identities::kMarshallingMinor, 16);
  const Text library = Text(u"TypeLib\\") + IdText(identities::kMarshallingId);
  const Text key = library + u"\\" + version;
  const Text neutral = key + u"\\0";
  entries.push_back({library, {}, u""});
  entries.push_back({key, {}, Ascii(identities::kMarshallingName)});
  entries.push_back({key + u"\\FLAGS", {}, Decimal(identities::kMarshallingFlags)});
  entries.push_back({neutral, {}, u""});
  entries.push_back({neutral + u"\\win32",
                     {},
                     module_file + u"\\" + Decimal(identities::kMarshallingLibraryResource)});
  const Marshalling by{kInterfaceMarshaller, identities::kMarshallingId, version};
  for (const identities::Generation& one : identities::kGenerations) {
    if (&one != &identities::kPresent) AppendInterface(one.interface_id, one.entry, by, entries);
  }
}

}  // namespace

std::vector<RegistrationEntry> OwnEntries(const Text& module_file) {
  std::vector<RegistrationEntry> entries;
  AppendClass(module_file, entries);
  const Text neutral = TypeLibraryVersionKey() + u"\\0";
  entries.push_back({neutral, {}, u""});
  entries.push_back({neutral + u"\\win32", {}, module_file});
  AppendEarlierInterfaces(module_file, entries);
  return entries;
}

void AppendInterface(const identities::Guid& id, const char* name, const Marshalling& by,
                     std::vector<RegistrationEntry>& entries) {
  const Text key = Text(u"Interface\\") + IdText(id);
  const Text library_key = key + u"\\TypeLib";
  const Text marshaller = IdText(by.marshaller);
  entries.push_back({key, {}, Ascii(name)});
  entries.push_back({key + u"\\ProxyStubClsid", {}, marshaller});
  entries.push_back({key + u"\\ProxyStubClsid32", {}, marshaller});
  entries.push_back({library_key, {}, IdText(by.library)});
  entries.push_back({library_key, u"Version", by.version});
}

Text IdText(const identities::Guid& id) {
  // The 32 digits in the order of the text, as nibbles of these words; a dash is no digit.
  const std::array words{id.data1, std::uint32_t{id.data2} << 16 | id.data3, LastWord(id, 0),
                         LastWord(id, 4)};
  std::u16string text = u"{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}";
  std::uint32_t digit = 0;
  for (char16_t& place : text) {
    if (place != u'X') continue;
    place = u"0123456789ABCDEF"[words[digit / 8] >> (28 - digit % 8 * 4) & 0xFU];
    ++digit;
  }
  return text;
}

Text TypeLibraryVersionKey() {
  return Text(u"TypeLib\\") + IdText(identities::kLibraryId) + u"\\" + LibraryVersion(16);
}

}  // namespace quorvane::component
