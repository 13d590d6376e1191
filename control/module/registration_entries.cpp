#include "control/module/registration_entries.h"

#include "control/automation/strings.h"
#include "control/interface/identities.h"

namespace quorvane::server {
namespace {

Text Number(std::uint32_t number, std::uint32_t base) {
  std::u16string digits;
  for (; number > 0 || digits.empty(); number /= base)
    digits.insert(digits.begin(), u"0123456789abcdef"[number % base]);
  return digits;
}

Text Decimal(std::uint32_t number) { return Number(number, 10); }

Text LibraryVersion(std::uint32_t base) {
  return Number(identities::kLibraryMajor, base) + u"." + Number(identities::kLibraryMinor, base);
}

struct ClassEntry {
  const char16_t* key;  // below that of the class
  const char16_t* value;
  Text data;
};

}  // namespace

std::vector<RegistrationEntry> ClassEntries(const Text& module_file) {
  const Text class_id = FromGuid(AsGuid(identities::kClassId));
  const Text name = FromAscii(identities::kProgId);
  const ClassEntry of_class[] = {
      {u"", nullptr, name},
      {u"\\InprocServer32", nullptr, module_file},
      {u"\\InprocServer32", u"ThreadingModel", u"Apartment"},
      {u"\\Control", nullptr, u""},
      {u"\\ToolboxBitmap32", nullptr,
       module_file + u", " + Decimal(identities::kToolboxBitmapResource)},
      // The default for all aspects, and the one for the content (DVASPECT_CONTENT).
      {u"\\MiscStatus", nullptr, u"0"},
      {u"\\MiscStatus\\1", nullptr, Decimal(identities::kMiscStatus)},
      {u"\\TypeLib", nullptr, FromGuid(AsGuid(identities::kLibraryId))},
      {u"\\Version", nullptr, LibraryVersion(10)},
      {u"\\ProgID", nullptr, name},
  };
  std::vector<RegistrationEntry> entries{{name, {}, name}, {name + u"\\CLSID", {}, class_id}};
  for (const ClassEntry& entry : of_class) {
    entries.push_back({Text(u"CLSID\\") + class_id + entry.key,
                       entry.value != nullptr ? Text(entry.value) : Text(), entry.data});
  }
  return entries;
}

Text TypeLibraryVersionKey() {
  return Text(u"TypeLib\\") + FromGuid(AsGuid(identities::kLibraryId)) + u"\\" + LibraryVersion(16);
}

}  // namespace quorvane::server
