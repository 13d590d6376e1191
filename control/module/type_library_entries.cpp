#include <array>
#include <cstdio>

#include "control/interface/identities.h"
#include "control/module/registration_entries.h"
#include "runtime/utf8.h"

namespace quorvane::component {
namespace {

// The version as the last part of its key has it.
Text VersionInHex() {
  const std::u16string key = TypeLibraryVersionKey().Characters();
  return key.substr(key.rfind(u'\\') + 1);
}

Text LocaleInHex() {
  std::array<char, 9> digits{};
  std::snprintf(digits.data(), digits.size(), "%x", identities::kLocale);
  return FromUtf8(digits.data());
}

}  // namespace

std::vector<RegistrationEntry> TypeLibraryEntries(const Text& module_file, const Text& folder) {
  const Text version = TypeLibraryVersionKey();
  // The flag of a library that describes controls.
  std::vector<RegistrationEntry> entries{
      {version, {}, FromUtf8(identities::kModuleName)},
      {version + u"\\" + LocaleInHex() + u"\\win32", {}, module_file},
      {version + u"\\FLAGS", {}, u"2"},
      {version + u"\\HELPDIR", {}, folder}};
  const identities::Generation& present = identities::kPresent;
  AppendInterface(present.interface_id, identities::kInterfaceName,
                  {kInterfaceMarshaller, identities::kLibraryId, VersionInHex()}, entries);
  AppendInterface(present.source_id, identities::kSourceInterfaceName,
                  {kEventMarshaller, identities::kLibraryId, VersionInHex()}, entries);
  return entries;
}

}  // namespace quorvane::component
