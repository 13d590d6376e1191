// Usage: make_registration rows
//        make_registration manifest [FILE]
//        make_registration assembly
//
// rows: prints what registers the component, for the installer: a line a value, with tabs between
// key, value name and text, where [MODULE] stands for the module's path and [FOLDER] for that of
// its folder. manifest: prints the manifest of a program that finds the component without any
// registration; FILE is the module's path as seen from the program's folder, its mere name if not
// given. assembly: prints the same as the manifest of an assembly of its own, for programs that
// name it as a dependency. Runs on the building machine.
#include <array>
#include <cstdio>
#include <stdexcept>
#include <string>

#include "control/interface/identities.h"
#include "control/module/registration_entries.h"
#include "runtime/utf8.h"

namespace quorvane::component {
namespace {

void PrintRows(const std::vector<RegistrationEntry>& entries) {
  for (const RegistrationEntry& entry : entries) {
    std::printf("%s\t%s\t%s\n", ToUtf8(entry.key).c_str(), ToUtf8(entry.value).c_str(),
                ToUtf8(entry.data).c_str());
  }
}

std::string Id(const identities::Guid& id) { return ToUtf8(IdText(id)); }

/// The words of a manifest for the bits of a status (OLEMISC).
std::string StatusWords(std::uint32_t status) {
  struct Word {
    std::uint32_t bit;
    const char* text;
  };
  constexpr std::array kWords{
      Word{0x00001, "recomposeonresize"},  Word{0x00010, "cantlinkinside"},
      Word{0x00080, "insideout"},          Word{0x00100, "activatewhenvisible"},
      Word{0x00400, "invisibleatruntime"}, Word{0x04000, "nouiactivate"},
      Word{0x20000, "setclientsitefirst"}};
  std::string words;
  for (const Word& word : kWords) {
    if ((status & word.bit) == 0) continue;
    words += (words.empty() ? "" : ",") + std::string(word.text);
    status &= ~word.bit;
  }
  if (status != 0) throw std::logic_error("a bit of the status has no word in manifests");
  return words;
}

void PrintMarshaller(const char* name, const identities::Guid& id,
                     const identities::Guid& marshaller, const identities::Guid& library) {
  std::printf(
      "  <comInterfaceExternalProxyStub name=\"%s\" iid=\"%s\"\n"
      "    proxyStubClsid32=\"%s\" tlbid=\"%s\"/>\n",
      name, Id(id).c_str(), Id(marshaller).c_str(), Id(library).c_str());
}

void PrintManifest(const char* own_identity, const char* file) {
  std::printf(
      "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
      "<assembly xmlns=\"urn:schemas-microsoft-com:asm.v1\" manifestVersion=\"1.0\">\n"
      "%s"
      "  <file name=\"%s\">\n",
      own_identity, file);
  std::printf(
      "    <comClass clsid=\"%s\" progid=\"%s\" threadingModel=\"Apartment\"\n"
      "      tlbid=\"%s\" description=\"%s\"\n"
      "      miscStatusContent=\"%s\"/>\n",
      Id(identities::kClassId).c_str(), identities::kProgId, Id(identities::kLibraryId).c_str(),
      identities::kProgId, StatusWords(identities::kMiscStatus).c_str());
  std::printf(
      "    <typelib tlbid=\"%s\" version=\"%d.%d\" resourceid=\"%d\" flags=\"CONTROL\" "
      "helpdir=\"\"/>\n",
      Id(identities::kLibraryId).c_str(), identities::kLibraryMajor, identities::kLibraryMinor,
      identities::kTypeLibraryResource);
  std::printf(
      "    <typelib tlbid=\"%s\" version=\"%d.%d\" resourceid=\"%d\" flags=\"HIDDEN\" "
      "helpdir=\"\"/>\n"
      "  </file>\n",
      Id(identities::kMarshallingId).c_str(), identities::kMarshallingMajor,
      identities::kMarshallingMinor, identities::kMarshallingLibraryResource);
  const identities::Generation& present = identities::kPresent;
  PrintMarshaller(identities::kInterfaceName, present.interface_id, kInterfaceMarshaller,
                  identities::kLibraryId);
  PrintMarshaller(identities::kSourceInterfaceName, present.source_id, kEventMarshaller,
                  identities::kLibraryId);
  for (const identities::Generation& earlier : identities::kGenerations) {
    if (&earlier == &present) continue;
    PrintMarshaller(earlier.entry, earlier.interface_id, kInterfaceMarshaller,
                    identities::kMarshallingId);
  }
  std::printf("</assembly>\n");
}

std::string AssemblyIdentity() {
  return std::string(R"(  <assemblyIdentity type="win32" name=")") + identities::kModuleName +
         R"(" version=")" QUORVANE_VERSION R"(.0" processorArchitecture="x86"/>)"
         "\n";
}

int Main(int count, char** words) {
  const std::string what = count > 1 ? words[1] : "";
  if (what == "rows" && count == 2) {
    PrintRows(TypeLibraryEntries(u"[MODULE]", u"[FOLDER]"));
    PrintRows(OwnEntries(u"[MODULE]"));
  } else if (what == "manifest" && count <= 3) {
    PrintManifest("", count == 3 ? words[2] : identities::kModuleFileName);
  } else if (what == "assembly" && count == 2) {
    PrintManifest(AssemblyIdentity().c_str(), identities::kModuleFileName);
  } else {
    std::fputs("usage: make_registration rows | manifest [FILE] | assembly\n", stderr);
    return 2;
  }
  return std::fflush(stdout) == 0 ? 0 : 1;
}

}  // namespace
}  // namespace quorvane::component

int main(int count, char** words) { return quorvane::component::Main(count, words); }
