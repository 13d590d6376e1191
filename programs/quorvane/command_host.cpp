// quorvane platform, system-directory, registry, profile, sid, user, adapters: the host services.

#include <algorithm>
#include <array>
#include <cctype>
#include <string>

#include "host/basAPI_api.h"
#include "platform/conversions.h"
#include "programs/common/program.h"
#include "programs/quorvane/commands.h"
#include "runtime/utf8.h"

namespace quorvane::examples {
namespace {

constexpr const char* kPlatformHelp =
    "usage: quorvane platform\n"
    "\n"
    "Prints the family of the operating system: \"Win32s\", \"Windows 95\" or \"Windows NT\".\n";

constexpr const char* kSystemDirectoryHelp =
    "usage: quorvane system-directory\n"
    "\n"
    "Prints the directory of the system's own libraries.\n";

constexpr const char* kRegistryHelp =
    "usage: quorvane registry read HIVE KEY NAME\n"
    "       quorvane registry write HIVE KEY NAME [--type TYPE] [VALUE]\n"
    "\n"
    "Reads or writes one value of the registry.\n"
    "HIVE is HKCR, HKCU, HKLM, HKU, HKCC, its long form, or the handle as a signed number. KEY is "
    "a\n"
    "path with \\ between its parts. The name \"\" is the key's default value.\n"
    "\n"
    "read prints the kind of the result: empty, integer N, or string \"...\" (with \\\\, \\\", "
    "\\n\n"
    "and \\xHH for what would not show). Binary values show as integers.\n"
    "write makes the key where it is missing. It exits with 1 when nothing could be written.\n"
    "  --type TYPE  sz (the default), dword, binary or a number; others than sz and dword make "
    "the\n"
    "               key and store nothing\n";

constexpr const char* kProfileHelp =
    "usage: quorvane profile read SECTION KEY [--file F]\n"
    "       quorvane profile write SECTION KEY [VALUE] [--file F]\n"
    "\n"
    "Reads or writes one value of a profile (INI) file: the system's own, or F. A name F without "
    "a\n"
    "directory lies where the system keeps such files. A value that is not there reads as an "
    "empty\n"
    "line; write exits with 1 when nothing could be written.\n";

constexpr const char* kSidHelp =
    "usage: quorvane sid\n"
    "\n"
    "Prints the security identifier of the current account in its compact form, without \"-\".\n"
    "Exits with 1 when there is none.\n";

constexpr const char* kUserHelp =
    "usage: quorvane user\n"
    "\n"
    "Prints the name of the current account. Exits with 1 when it has none of at most 24 bytes.\n";

constexpr const char* kAdaptersHelp =
    "usage: quorvane adapters\n"
    "\n"
    "Prints the hardware address of each network adapter, the system's last adapter first. Exits\n"
    "with 1 when the system cannot list them.\n";

int PrintLine(Console& console, const Text& text) {
  console.Out(ToUtf8(text) + "\n");
  return ExitCode::kSuccess;
}

int Fail(Console& console, const std::string& reason) {
  console.Complain(reason);
  return ExitCode::kFailure;
}

std::string UpperCase(std::string word) {
  std::ranges::transform(word, word.begin(), [](unsigned char c) { return std::toupper(c); });
  return word;
}

// --- the registry

RegistryHandle ParseHive(const std::string& word) {
  struct Hive {
    const char* short_name;
    const char* long_name;
    std::uint32_t handle;
  };
  constexpr std::array kHives{
      Hive{"HKCR", "HKEY_CLASSES_ROOT", 0x80000000}, Hive{"HKCU", "HKEY_CURRENT_USER", 0x80000001},
      Hive{"HKLM", "HKEY_LOCAL_MACHINE", 0x80000002}, Hive{"HKU", "HKEY_USERS", 0x80000003},
      Hive{"HKCC", "HKEY_CURRENT_CONFIG", 0x80000005}};
  const std::string name = UpperCase(word);
  for (const Hive& hive : kHives) {
    if (name == hive.short_name || name == hive.long_name) {
      return static_cast<RegistryHandle>(hive.handle);
    }
  }
  return ParseInteger(word, "HIVE");
}

std::int32_t ParseType(const std::string& word) {
  if (word == "sz") return 1;
  if (word == "binary") return 3;
  if (word == "dword") return 4;
  return ParseInteger(word, "TYPE");
}

std::string Quoted(const std::string& utf8) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string quoted = "\"";
  for (const char c : utf8) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') quoted += '\\';
    if (c == '\n') {
      quoted += "\\n";
    } else if (byte < 0x20 || byte == 0x7F) {
      quoted.append("\\x").append(1, kDigits[byte >> 4]).append(1, kDigits[byte & 0xF]);
    } else {
      quoted += c;
    }
  }
  return quoted + "\"";
}

std::string KindAndValue(const TaggedValue& value) {
  if (value.IsEmpty()) return "empty";
  if (const auto* integer = value.As<std::int32_t>()) return "integer " + std::to_string(*integer);
  return "string " + Quoted(ToUtf8(ToText(value)));
}

int RegistryRead(const Arguments& arguments, Console& console) {
  arguments.RequireOperands(4, 4, "read HIVE KEY NAME");
  if (arguments.Has("--type")) throw UsageError("--type is for write only");
  const auto& words = arguments.Operands();
  Text key = FromUtf8(words[2]);
  Text name = FromUtf8(words[3]);
  const TaggedValue value = basAPI_api::ReadRegistryValue(ParseHive(words[1]), key, name);
  console.Out(KindAndValue(value) + "\n");
  return ExitCode::kSuccess;
}

int RegistryWrite(const Arguments& arguments, Console& console) {
  arguments.RequireOperands(4, 5, "write HIVE KEY NAME [VALUE]");
  const auto& words = arguments.Operands();
  Text key = FromUtf8(words[2]);
  Text name = FromUtf8(words[3]);
  TaggedValue value;
  if (words.size() == 5) value = FromUtf8(words[4]);
  const std::int32_t type = ParseType(arguments.Value("--type").value_or("sz"));
  const Boolean16 written =
      basAPI_api::WriteRegistryValue(ParseHive(words[1]), key, name, value, type);
  return written.IsTrue() ? ExitCode::kSuccess : Fail(console, "nothing was written");
}

// --- profiles

int ProfileRead(const Arguments& arguments, Console& console) {
  arguments.RequireOperands(3, 3, "read SECTION KEY");
  Text section = FromUtf8(arguments.Operands()[1]);
  Text key = FromUtf8(arguments.Operands()[2]);
  const auto file = arguments.Value("--file");
  if (!file) return PrintLine(console, basAPI_api::ReadProfileValue(section, key));
  Text file_name = FromUtf8(*file);
  return PrintLine(console, basAPI_api::ReadPrivateProfileValue(section, key, file_name));
}

int ProfileWrite(const Arguments& arguments, Console& console) {
  arguments.RequireOperands(3, 4, "write SECTION KEY [VALUE]");
  Text section = FromUtf8(arguments.Operands()[1]);
  Text key = FromUtf8(arguments.Operands()[2]);
  Text value;  // absent, which takes the key away
  if (arguments.Operands().size() == 4) value = FromUtf8(arguments.Operands()[3]);
  const auto file = arguments.Value("--file");
  Text file_name = FromUtf8(file.value_or(""));
  const Boolean16 written =
      file ? basAPI_api::WritePrivateProfileValue(section, key, value, file_name)
           : basAPI_api::WriteProfileValue(section, key, value);
  return written.IsTrue() ? ExitCode::kSuccess : Fail(console, "nothing was written");
}

// --- the commands

int ReadOrWrite(const Arguments& arguments, Console& console, decltype(&RegistryRead) read,
                decltype(&RegistryRead) write) {
  const auto& words = arguments.Operands();
  if (!words.empty() && words.front() == "read") return read(arguments, console);
  if (!words.empty() && words.front() == "write") return write(arguments, console);
  throw UsageError("read or write is missing");
}

int Registry(const Arguments& arguments, Console& console) {
  return ReadOrWrite(arguments, console, RegistryRead, RegistryWrite);
}

int Profile(const Arguments& arguments, Console& console) {
  return ReadOrWrite(arguments, console, ProfileRead, ProfileWrite);
}

int Platform(const Arguments& arguments, Console& console) {
  arguments.RequireOperands(0, 0, "");
  return PrintLine(console, basAPI_api::GetOSPlatformName());
}

int SystemDirectory(const Arguments& arguments, Console& console) {
  arguments.RequireOperands(0, 0, "");
  return PrintLine(console, basAPI_api::GetSystemDirectoryPath());
}

int Sid(const Arguments& arguments, Console& console) {
  arguments.RequireOperands(0, 0, "");
  const Text sid = basAPI_api::GetCurrentAccountSidText();
  if (sid.IsEmpty()) return Fail(console, "the current account has no security identifier");
  return PrintLine(console, sid);
}

int User(const Arguments& arguments, Console& console) {
  arguments.RequireOperands(0, 0, "");
  const Text name = basAPI_api::GetCurrentUserName();
  if (name.IsEmpty()) return Fail(console, "the current account has no name of at most 24 bytes");
  return PrintLine(console, name);
}

int Adapters(const Arguments& arguments, Console& console) {
  arguments.RequireOperands(0, 0, "");
  const auto list = basAPI_api::GetAdapterAddresses();
  if (!list) return Fail(console, "the system cannot list its adapters");
  for (const Text& address : *list) PrintLine(console, address);
  return ExitCode::kSuccess;
}

constexpr std::array kRegistryOptions{Option{"--type"}};
constexpr std::array kProfileOptions{Option{"--file"}};

constexpr std::array kCommands{
    Command{"platform", "family of the operating system", kPlatformHelp, {}, Platform},
    Command{"system-directory",
            "directory of the system's libraries",
            kSystemDirectoryHelp,
            {},
            SystemDirectory},
    Command{"registry", "read or write a registry value", kRegistryHelp, kRegistryOptions,
            Registry},
    Command{"profile", "read or write a profile (INI) value", kProfileHelp, kProfileOptions,
            Profile},
    Command{"sid", "security identifier of the current account", kSidHelp, {}, Sid},
    Command{"user", "name of the current account", kUserHelp, {}, User},
    Command{"adapters", "hardware addresses of the network adapters", kAdaptersHelp, {}, Adapters},
};

}  // namespace

std::span<const Command> HostCommands() { return kCommands; }

}  // namespace quorvane::examples
