// Usage: make_resources VERSION IMAGES OUTPUT
//
// Writes into the folder OUTPUT everything that is made from identities.h: what QuorvaneSecurity.rc
// takes up (the type libraries, the two tables of interface ids, the images made from the texts in
// the folder IMAGES, and identities.rh with the numbers and texts and with VERSION, such as
// 3.09.0001), the interface definition QuorvaneSecurity.idl, and the two C++ headers of the
// interface under their paths from the root of the repository. Runs on the building machine.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "control/interface/identities.h"
#include "control/resources/bytes.h"
#include "control/resources/control_library.h"
#include "control/resources/image.h"
#include "control/resources/interface_texts.h"

namespace {

using namespace quorvane;
using typelib::Bytes;

std::string output_folder;

void Write(const std::string& name, const std::string& content) {
  const std::filesystem::path output(output_folder);
  const std::filesystem::path folder = std::filesystem::path(name).parent_path();
  if (!folder.empty()) std::filesystem::create_directories(output / folder);
  std::ofstream file(output / name, std::ios::binary);
  file << content;
  file.close();
  if (!file) throw std::runtime_error("cannot write " + name);
}

void Write(const std::string& name, const Bytes& content) {
  Write(name, std::string(content.Data().begin(), content.Data().end()));
}

// One column of the generations: a byte count, then the ids, oldest first.
Bytes IdTable(identities::Guid identities::Generation::*column) {
  Bytes ids, table;
  for (const auto& generation : identities::kGenerations) ids.PutId(generation.*column);
  table.Put32(ids.Size());
  table.Append(ids);
  return table;
}

resources::Image ImageIn(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error("cannot read " + path);
  try {
    return resources::ReadImage(file);
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(path + ": " + error.what());
  }
}

std::string Hex4(std::uint32_t number) {
  char text[5];
  std::snprintf(text, sizeof text, "%04X", number & 0xFFFFU);
  return text;
}

// "3.09.0001" as the four numbers 3,9,0,1.
std::string VersionNumbers(const std::string& version) {
  unsigned major = 0, minor = 0, revision = 0;
  int length = 0;
  const int count =
      std::sscanf(version.c_str(), "%1u.%2u.%4u%n", &major, &minor, &revision, &length);
  if (count != 3 || length != 9 || version.size() != 9)
    throw std::runtime_error("the version " + version + " is not of the form 3.09.0001");
  return std::to_string(major) + "," + std::to_string(minor) + ",0," + std::to_string(revision);
}

Bytes Definitions(const std::string& version) {
  using namespace identities;
  Bytes text;
  auto define = [&](const std::string& name, const std::string& value) {
    text.PutText("#define " + name + " " + value + "\n");
  };
  auto define_text = [&](const std::string& name, const std::string& value) {
    define(name, "\"" + value + "\"");
  };
  text.PutText("// Made from control/interface/identities.h.\n");
  define("TYPE_LIBRARY", std::to_string(kTypeLibraryResource));
  define("MARSHALLING_LIBRARY", std::to_string(kMarshallingLibraryResource));
  define("ID_TABLE", std::to_string(kIdTableResource));
  define("INTERFACE_IDS", kInterfaceIdsType);
  define("SOURCE_IDS", kSourceIdsType);
  define("TOOLBOX_BITMAP", std::to_string(kToolboxBitmapResource));
  define("CONTROL_ICON", std::to_string(kControlIconResource));
  define("MODULE_VERSION", std::to_string(kVersionResource));
  define("VERSION_NUMBERS", VersionNumbers(version));
  define("VERSION_LANGUAGE", "0x" + Hex4(kLocale));
  define("VERSION_CODE_PAGE", "0x" + Hex4(kVersionCodePage));
  define_text("VERSION_BLOCK", Hex4(kLocale) + Hex4(kVersionCodePage));
  define_text("VERSION_TEXT", version);
  define_text("MODULE_NAME", kModuleName);
  define_text("MODULE_FILE_NAME", kModuleFileName);
  return text;
}

void MakeResources(const std::string& version, const std::string& images) {
  Write("QuorvaneSecurity.tlb", typelib::ControlLibrary());
  Write("marshalling.tlb", typelib::MarshallingLibrary());
  Write("interface_ids.bin", IdTable(&identities::Generation::interface_id));
  Write("source_ids.bin", IdTable(&identities::Generation::source_id));
  Write("toolbox.bmp", resources::BitmapFile(ImageIn(images + "/toolbox.txt")));
  Write("control.ico", resources::IconFile(ImageIn(images + "/control.txt")));
  Write("identities.rh", Definitions(version));
  Write("QuorvaneSecurity.idl", resources::InterfaceDefinition());
  Write("control/interface/security_ctrl.h", resources::InterfaceHeader());
  Write("control/object/security_ctrl_members.h", resources::MembersHeader());
}

}  // namespace

int main(int argument_count, char** arguments) {
  if (argument_count != 4) {
    std::fputs("usage: make_resources VERSION IMAGES OUTPUT\n", stderr);
    return 2;
  }
  output_folder = arguments[3];
  try {
    MakeResources(arguments[1], arguments[2]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_resources: %s\n", error.what());
    return 1;
  }
  return 0;
}
