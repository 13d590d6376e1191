#include "control/module/registration_entries.h"

#include <array>
#include <string>
#include <string_view>
#include <utility>

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

// A key, and what is stored in it and below it.
class Branch {
 public:
  Branch(Text key, std::vector<RegistrationEntry>& entries)
      : key_(std::move(key)), entries_(entries) {}

  // `below` begins with a backslash, or is empty for the key itself.
  void Add(const char16_t* below, const Text& data, const char16_t* value = nullptr) {
    entries_.push_back({key_ + below, value != nullptr ? Text(value) : Text(), data});
  }

 private:
  Text key_;
  std::vector<RegistrationEntry>& entries_;
};

void AppendClass(const Text& module_file, std::vector<RegistrationEntry>& entries) {
  const Text class_id = IdText(identities::kClassId);
  const Text name = Ascii(identities::kProgId);
  Branch of_name(name, entries);
  of_name.Add(u"", name);
  of_name.Add(u"\\CLSID", class_id);
  Branch of_class(Text(u"CLSID\\") + class_id, entries);
  of_class.Add(u"", name);
  of_class.Add(u"\\InprocServer32", module_file);
  of_class.Add(u"\\InprocServer32", u"Apartment", u"ThreadingModel");
  of_class.Add(u"\\Control", u"");
  of_class.Add(u"\\ToolboxBitmap32",
               module_file + u", " + Decimal(identities::kToolboxBitmapResource));
  // The default for all aspects, and the one for the content (DVASPECT_CONTENT).
  of_class.Add(u"\\MiscStatus", u"0");
  of_class.Add(u"\\MiscStatus\\1", Decimal(identities::kMiscStatus));
  of_class.Add(u"\\TypeLib", IdText(identities::kLibraryId));
  of_class.Add(u"\\Version", LibraryVersion(10));
  of_class.Add(u"\\ProgID", name);
}

// A library for any locale; its file is that of the module, and what follows the path there.
void AppendNeutral(const Text& key, const Text& file, std::vector<RegistrationEntry>& entries) {
  Branch neutral(key + u"\\0", entries);
  neutral.Add(u"", u"");
  neutral.Add(u"\\win32", file);
}

void AppendEarlierInterfaces(const Text& module_file, std::vector<RegistrationEntry>& entries) {
  const Text version = Version(identities::kMarshallingMajor, identities::kMarshallingMinor, 16);
  const Text library = Text(u"TypeLib\\") + IdText(identities::kMarshallingId);
  const Text key = library + u"\\" + version;
  Branch(library, entries).Add(u"", u"");
  Branch of_version(key, entries);
  of_version.Add(u"", Ascii(identities::kMarshallingName));
  of_version.Add(u"\\FLAGS", Decimal(identities::kMarshallingFlags));
  AppendNeutral(key, module_file + u"\\" + Decimal(identities::kMarshallingLibraryResource),
                entries);
  const Marshalling by{kInterfaceMarshaller, identities::kMarshallingId, version};
  for (const identities::Generation& one : identities::kGenerations) {
    if (&one != &identities::kPresent) AppendInterface(one.interface_id, one.entry, by, entries);
  }
}

}  // namespace

std::vector<RegistrationEntry> OwnEntries(const Text& module_file) {
  std::vector<RegistrationEntry> entries;
  AppendClass(module_file, entries);
  AppendNeutral(TypeLibraryVersionKey(), module_file, entries);
  AppendEarlierInterfaces(module_file, entries);
  return entries;
}

void AppendInterface(const identities::Guid& id, const char* name, const Marshalling& by,
                     std::vector<RegistrationEntry>& entries) {
  const Text marshaller = IdText(by.marshaller);
  Branch of_interface(Text(u"Interface\\") + IdText(id), entries);
  of_interface.Add(u"", Ascii(name));
  of_interface.Add(u"\\ProxyStubClsid", marshaller);
  of_interface.Add(u"\\ProxyStubClsid32", marshaller);
  of_interface.Add(u"\\TypeLib", IdText(by.library));
  of_interface.Add(u"\\TypeLib", by.version, u"Version");
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
