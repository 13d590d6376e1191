#include "control/server/registration_entries.h"

#include "control/server/identities.h"
#include "control/server/strings.h"

namespace quorvane::server {
namespace {

Text Decimal(std::uint32_t number) { return FromAscii(std::to_string(number)); }

Text Hexadecimal(std::uint32_t number) {
  std::u16string digits;
  for (; number > 0 || digits.empty(); number /= 16)
    digits.insert(digits.begin(), u"0123456789abcdef"[number % 16]);
  return digits;
}

}  // namespace

std::vector<RegistrationEntry> ClassEntries(const Text& module_file) {
  const Text class_id = FromGuid(AsGuid(identities::kClassId));
  const Text class_key = Text(u"CLSID\\") + class_id;
  const Text name = FromAscii(identities::kProgId);
  const Text version =
      Decimal(identities::kLibraryMajor) + u"." + Decimal(identities::kLibraryMinor);
  const Text bitmap = module_file + u", " + Decimal(identities::kToolboxBitmapResource);
  const Text server_key = class_key + u"\\InprocServer32";
  const Text status_key = class_key + u"\\MiscStatus";
  return {
      {name, {}, name},
      {name + u"\\CLSID", {}, class_id},
      {class_key, {}, name},
      {server_key, {}, module_file},
      {server_key, u"ThreadingModel", u"Apartment"},
      {class_key + u"\\Control", {}, u""},
      {class_key + u"\\ToolboxBitmap32", {}, bitmap},
      // The default for all aspects, and the one for the content (DVASPECT_CONTENT).
      {status_key, {}, u"0"},
      {status_key + u"\\1", {}, Decimal(identities::kMiscStatus)},
      {class_key + u"\\TypeLib", {}, FromGuid(AsGuid(identities::kLibraryId))},
      {class_key + u"\\Version", {}, version},
      {class_key + u"\\ProgID", {}, name},
  };
}

Text TypeLibraryVersionKey() {
  return Text(u"TypeLib\\") + FromGuid(AsGuid(identities::kLibraryId)) + u"\\" +
         Hexadecimal(identities::kLibraryMajor) + u"." + Hexadecimal(identities::kLibraryMinor);
}

}  // namespace quorvane::server
