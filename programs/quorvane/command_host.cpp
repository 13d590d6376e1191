// quorvane platform, system-directory, profile, sid, user, adapters: the host services.

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "host/basAPI_api.h"
#include "programs/common/program.h"
#include "programs/quorvane/commands.h"
#include "programs/quorvane/file_name.h"
#include "programs/quorvane/json.h"
#include "programs/quorvane/profile_calls.h"
#include "programs/quorvane/system_reason.h"
#include "runtime/utf8.h"

namespace quorvane::programs {
namespace host_family {
namespace {

constexpr const char* kPlatformDetails =
    R"(Prints the family of the operating system: "Win32s", "Windows 95" or "Windows
NT".)";

constexpr const char* kSystemDirectoryDetails =
    R"(Prints the directory of the system's own libraries.)";

constexpr const char* kProfileDetails =
    R"(Reads or writes one value of a profile (INI) file: the system's own, or FILE. A
name without a directory lies where the system keeps such files.)";

constexpr const char* kProfileReadDetails =
    R"(Prints the value; one that is not there reads as an empty line.)";

constexpr const char* kProfileWriteDetails =
    R"(Stores VALUE, or takes the key away without one. Exits with 1, and says why,
when nothing could be written. What could not be read back is refused: line
ends, a key that is empty or holds =, a section that holds ], and blanks around
any of them; a value with blanks around it goes in double quotes.)";

constexpr const char* kSidDetails =
    R"(Prints the security identifier of the current account in its compact form,
without "-". Exits with 1 when there is none.)";

constexpr const char* kUserDetails =
    R"(Prints the name of the current account. Exits with 1 when it has none of at most
24 bytes.)";

constexpr const char* kAdaptersDetails =
    R"(Prints the hardware address of each network adapter, the system's last adapter
first. Exits with 1 when the system cannot list them.)";

constexpr Option kJson{"--json", nullptr, "prints the result as JSON", 'j'};

int PrintLine(Console& console, const Text& text) {
  console.Out(ToUtf8(text) + "\n");
  return ExitCode::kSuccess;
}

int Fail(Console& console, const std::string& reason) {
  console.Complain(reason);
  return ExitCode::kFailure;
}

// --- profiles

int ProfileRead(const Arguments& arguments, Console& console) {
  Text section = FromUtf8(arguments.Operands()[0]);
  Text key = FromUtf8(arguments.Operands()[1]);
  const auto file = arguments.Value("--file");
  Text file_name = FileNameOf(file.value_or(""));
  const Text value =
      file ? basAPI_api::ReadPrivateProfileValue(section, key, file_name, ProfileCallsFor(*file))
           : basAPI_api::ReadProfileValue(section, key);
  if (arguments.Has("--json")) {
    console.Out(JsonRecord({{"value", JsonText(ToUtf8(value))}}) + "\n");
    return ExitCode::kSuccess;
  }
  return PrintLine(console, value);
}

// A profile file is lines: a section's in brackets, a key's with an equals sign, a comment's with a
// semicolon. What would make another line of it, or lose its own blanks, is not read back.
void RefuseUnreadable(const std::string& word, const std::string& what, std::string_view signs) {
  const auto refuse = [&what](const std::string& reason) {
    throw UsageError(what + " could not be read back: " + reason);
  };
  if (word.find_first_of("\r\n") != std::string::npos) refuse("it holds a line end");
  if (const auto place = word.find_first_of(signs); place != std::string::npos)
    refuse(std::string("it holds ") + word[place]);
  constexpr std::string_view kBlanks = " \t";
  if (!word.empty() && (kBlanks.find(word.front()) != std::string::npos ||
                        kBlanks.find(word.back()) != std::string::npos)) {
    refuse("it starts or ends with a blank");
  }
}

void RefuseUnreadable(const std::vector<std::string>& words) {
  RefuseUnreadable(words[0], "SECTION", "]");
  RefuseUnreadable(words[1], "KEY", "=");
  if (words[1].empty()) throw UsageError("KEY could not be read back: it is empty");
  if (words[1].front() == ';' || words[1].front() == '[')
    throw UsageError(std::string("KEY could not be read back: it starts with ") + words[1].front());
  if (words.size() == 3) RefuseUnreadable(words[2], "VALUE", "");
}

int ProfileWrite(const Arguments& arguments, Console& console) {
  const auto& words = arguments.Operands();
  RefuseUnreadable(words);
  Text section = FromUtf8(words[0]);
  Text key = FromUtf8(words[1]);
  Text value;  // absent, which takes the key away
  if (words.size() == 3) value = FromUtf8(words[2]);
  const auto file = arguments.Value("--file");
  Text file_name = FileNameOf(file.value_or(""));
  const Boolean16 written = file ? basAPI_api::WritePrivateProfileValue(
                                       section, key, value, file_name, ProfileCallsFor(*file))
                                 : basAPI_api::WriteProfileValue(section, key, value);
  if (written.IsTrue()) return ExitCode::kSuccess;
  return Fail(console, "nothing was written: " + ReasonOfProfileFailure(file));
}

// --- the commands

int Platform(const Arguments& /*arguments*/, Console& console) {
  return PrintLine(console, basAPI_api::GetOSPlatformName());
}

int SystemDirectory(const Arguments& /*arguments*/, Console& console) {
  return PrintLine(console, basAPI_api::GetSystemDirectoryPath());
}

int Sid(const Arguments& /*arguments*/, Console& console) {
  const Text sid = basAPI_api::GetCurrentAccountSidText();
  if (sid.IsEmpty()) return Fail(console, "the current account has no security identifier");
  return PrintLine(console, sid);
}

int User(const Arguments& /*arguments*/, Console& console) {
  const Text name = basAPI_api::GetCurrentUserName();
  if (name.IsEmpty()) return Fail(console, "the current account has no name of at most 24 bytes");
  return PrintLine(console, name);
}

int Adapters(const Arguments& arguments, Console& console) {
  const auto list = basAPI_api::GetAdapterAddresses();
  if (!list) return Fail(console, "the system cannot list its adapters");
  std::vector<std::string> addresses;
  std::ranges::transform(*list, std::back_inserter(addresses), ToUtf8);
  if (arguments.Has("--json")) {
    std::ranges::transform(addresses, addresses.begin(), JsonText);
    console.Out(JsonList(addresses) + "\n");
  } else {
    for (const std::string& address : addresses) console.Out(address + "\n");
  }
  return ExitCode::kSuccess;
}

constexpr std::array kJsonOptions{kJson};
constexpr Option kFile{"--file", "FILE", "the file in the place of the system's own", 'f'};
constexpr std::array kProfileReadOptions{kFile, kJson};
constexpr std::array kProfileWriteOptions{kFile};

constexpr std::array kCommands{
    Command{"platform", "", "family of the operating system", kPlatformDetails, {}, Platform},
    Command{"system-directory",
            "",
            "directory of the system's libraries",
            kSystemDirectoryDetails,
            {},
            SystemDirectory},
    Command{"profile",
            "OPERATION",
            "read or write a profile (INI) value",
            kProfileDetails,
            {},
            nullptr},
    Command{"profile read", "SECTION KEY", "shows a value", kProfileReadDetails,
            kProfileReadOptions, ProfileRead},
    Command{"profile write", "SECTION KEY [VALUE]", "stores a value or takes a key away",
            kProfileWriteDetails, kProfileWriteOptions, ProfileWrite},
    Command{"sid", "", "security identifier of the current account", kSidDetails, {}, Sid},
    Command{"user", "", "name of the current account", kUserDetails, {}, User},
    Command{"adapters", "", "hardware addresses of the network adapters", kAdaptersDetails,
            kJsonOptions, Adapters},
};

}  // namespace
}  // namespace host_family

std::span<const Command> HostCommands() { return host_family::kCommands; }

}  // namespace quorvane::programs
