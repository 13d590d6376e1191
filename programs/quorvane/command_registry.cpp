// quorvane registry: single values through the library, and the whole of it as it is kept.

#include <algorithm>
#include <array>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "host/basAPI_api.h"
#include "platform/conversions.h"
#include "programs/common/program.h"
#include "programs/quorvane/commands.h"
#include "programs/quorvane/file_name.h"
#include "programs/quorvane/input.h"
#include "programs/quorvane/json.h"
#include "programs/quorvane/reg_file.h"
#include "programs/quorvane/registry_hives.h"
#include "programs/quorvane/registry_watch.h"
#include "programs/quorvane/stored_registry.h"
#include "programs/quorvane/system_reason.h"
#include "programs/quorvane/utf16_bytes.h"
#include "runtime/ignored_result.h"
#include "runtime/utf8.h"

namespace quorvane::programs {
namespace registry_family {
namespace {

constexpr const char* kDetails =
    R"(HIVE is HKCR, HKCU, HKLM, HKU, HKCC, its long form, or the handle as a signed
number. KEY is a path with \ between its parts. The name "" is the key's default
value.)";

constexpr const char* kReadDetails =
    R"(Prints the kind of the result: empty, integer N, or string "..." (with \\, \",
\n and \xHH for what would not show). Binary values show as integers.)";

constexpr const char* kWriteDetails =
    R"(Stores one value and makes the key where it is missing. Exits with 1, and says
why, when nothing could be written.)";

constexpr const char* kListDetails =
    R"(Prints the key KEY of HIVE, its values and all keys below it; without KEY all
keys of HIVE, without HIVE those of all hives. A value shows as its name and
string "...", integer N, or type N and its bytes. Exits with 1 when there is no
such key.)";

constexpr const char* kDeleteDetails =
    R"(Takes the value NAME away, or with --tree the whole key. Exits with 1 when there
is no such value or key.)";

constexpr const char* kExportDetails =
    R"(Writes the key KEY of HIVE and all keys below it to FILE as a .reg file, in
UTF-16 as Windows does; to standard output for -, as the same text in UTF-8.
Without KEY all of HIVE, without HIVE all hives.)";

constexpr const char* kImportDetails =
    R"(Makes the changes of a .reg file: version 5.00 or REGEDIT4, in UTF-16 with a
mark, UTF-8, or the system's code page; - is standard input. A file with a wrong
line changes nothing. On Linux texts are kept in the system's code page.)";

constexpr std::array kJsonOptions{
    Option{"--json", nullptr, "prints the result as JSON", 'j'},
};
constexpr std::array kWriteOptions{
    Option{"--type", "TYPE",
           "sz (the default), dword, binary or a number; others than sz and dword make the key and "
           "store nothing",
           't'},
};
constexpr std::array kDeleteOptions{
    Option{"--tree", nullptr, "deletes the key with its values and all keys below it"},
};

// --- what the words mean

RegistryHandle ParseHive(const std::string& word) {
  if (const auto hive = HiveNamed(word)) return static_cast<RegistryHandle>(hive->handle);
  try {
    return ParseInteger(word, "HIVE");
  } catch (const UsageError& error) {
    throw UsageError(error.what() + std::string("; the hives are ") + HiveNames());
  }
}

std::int32_t ParseType(const std::string& word) {
  if (word == "sz") return 1;
  if (word == "binary") return 3;
  if (word == "dword") return 4;
  return ParseInteger(word, "TYPE");
}

// The whole path of a key of a hive that has a name.
std::u16string KeyPath(const std::string& hive_word, const std::string& key) {
  const RegistryHandle handle = ParseHive(hive_word);
  const auto* const hive = std::ranges::find_if(kHives, [handle](const Hive& known) {
    return static_cast<RegistryHandle>(known.handle) == handle;
  });
  if (hive == kHives.end()) throw UsageError("HIVE has no name; the hives are " + HiveNames());
  return FromUtf8(key.empty() ? hive->long_name : std::string(hive->long_name) + "\\" + key)
      .Characters();
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

// --- single values

std::string KindAndValue(const TaggedValue& value) {
  if (value.IsEmpty()) return "empty";
  if (const auto* integer = value.As<std::int32_t>()) return "integer " + std::to_string(*integer);
  return "string " + Quoted(ToUtf8(ToText(value)));
}

std::string JsonOf(const TaggedValue& value) {
  if (value.IsEmpty()) return JsonRecord({{"kind", JsonText("empty")}, {"value", "null"}});
  if (const auto* integer = value.As<std::int32_t>())
    return JsonRecord({{"kind", JsonText("integer")}, {"value", std::to_string(*integer)}});
  return JsonRecord({{"kind", JsonText("string")}, {"value", JsonText(ToUtf8(ToText(value)))}});
}

int Read(const Arguments& arguments, Console& console) {
  const auto& words = arguments.Operands();
  Text key = FromUtf8(words[1]);
  Text name = FromUtf8(words[2]);
  const TaggedValue value = basAPI_api::ReadRegistryValue(ParseHive(words[0]), key, name);
  console.Out((arguments.Has("--json") ? JsonOf(value) : KindAndValue(value)) + "\n");
  return ExitCode::kSuccess;
}

int Write(const Arguments& arguments, Console& console) {
  const auto& words = arguments.Operands();
  Text key = FromUtf8(words[1]);
  Text name = FromUtf8(words[2]);
  TaggedValue value;
  if (words.size() == 4) value = FromUtf8(words[3]);
  const std::int32_t type = ParseType(arguments.Value("--type").value_or("sz"));
  RegistryWatch watch;
  const Boolean16 written =
      basAPI_api::WriteRegistryValue(ParseHive(words[0]), key, name, value, type, watch);
  if (written.IsTrue()) return ExitCode::kSuccess;
  // Where all calls went well it was the value that could not be handed to them.
  console.Complain("nothing was written: " +
                   (watch.Failure() != 0 ? ReasonOf(watch.Failure())
                                         : "VALUE is no integer from -2147483648 to 2147483647"));
  return ExitCode::kFailure;
}

// --- the whole

// What the operands [HIVE] [KEY] from `first` on name. Raises StreamError where there is no such
// key; a hive is always there.
std::vector<RegistryBranch> BranchesOf(const std::vector<std::string>& words, std::size_t first) {
  if (words.size() > first) {
    const std::string key = words.size() > first + 1 ? words[first + 1] : "";
    if (auto branches = BranchesFrom(KeyPath(words[first], key))) return *branches;
    throw StreamError("there is no such key: " + key);
  }
  std::vector<RegistryBranch> all;
  for (const Hive& hive : kHives) {
    // One that this system has not is left out.
    const auto branches = BranchesFrom(FromUtf8(hive.long_name).Characters());
    if (branches) all.insert(all.end(), branches->begin(), branches->end());
  }
  return all;
}

std::string BytesInHexadecimal(std::string_view bytes) {
  std::string written;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    written.append(written.empty() ? "" : " ").append(1, "0123456789ABCDEF"[byte >> 4]);
    written += "0123456789ABCDEF"[byte & 15];
  }
  return written;
}

std::optional<std::int32_t> IntegerOf(const RegistryEntry& value) {
  if (value.type != 4 || value.data.size() != 4) return std::nullopt;
  std::uint32_t number = 0;
  for (std::size_t i = 4; i > 0; --i)
    number = (number << 8) | static_cast<unsigned char>(value.data[i - 1]);
  return static_cast<std::int32_t>(number);
}

std::optional<std::string> TextOf(const RegistryEntry& value) {
  if (value.type != 1) return std::nullopt;
  std::u16string text = FromUtf16Bytes(value.data);
  if (text.ends_with(u'\0')) text.pop_back();
  return ToUtf8(Text(text));
}

std::string Shown(const RegistryEntry& value) {
  if (const auto text = TextOf(value)) return "string " + Quoted(*text);
  if (const auto integer = IntegerOf(value)) return "integer " + std::to_string(*integer);
  return "type " + std::to_string(value.type) + " " + BytesInHexadecimal(value.data);
}

std::string Json(const RegistryEntry& value) {
  const auto text = TextOf(value);
  const auto integer = IntegerOf(value);
  return JsonRecord({{"name", JsonText(ToUtf8(Text(value.name)))},
                     {"type", std::to_string(value.type)},
                     {"value", text      ? JsonText(*text)
                               : integer ? std::to_string(*integer)
                                         : JsonText(BytesInHexadecimal(value.data))}});
}

std::string Json(const RegistryBranch& branch) {
  std::vector<std::string> values;
  for (const RegistryEntry& value : branch.values) values.push_back(Json(value));
  return JsonRecord({{"key", JsonText(ToUtf8(Text(branch.path)))}, {"values", JsonList(values)}});
}

int List(const Arguments& arguments, Console& console) {
  std::vector<std::string> list;
  for (const RegistryBranch& branch : BranchesOf(arguments.Operands(), 0)) {
    if (arguments.Has("--json")) {
      list.push_back(Json(branch));
      continue;
    }
    console.Out(ToUtf8(Text(branch.path)) + "\n");
    for (const RegistryEntry& value : branch.values)
      console.Out("  " + Quoted(ToUtf8(Text(value.name))) + " " + Shown(value) + "\n");
  }
  if (arguments.Has("--json")) console.Out(JsonList(list) + "\n");
  return ExitCode::kSuccess;
}

// Asked of the system, which finds names without regard to case.
bool HasValue(const std::vector<std::string>& words) {
  RegistryWatch watch;
  Text key = FromUtf8(words[1]);
  Text name = FromUtf8(words[2]);
  IgnoreResult(basAPI_api::ReadRegistryValue(ParseHive(words[0]), key, name, watch));
  return watch.Failure() == 0;
}

int Delete(const Arguments& arguments, Console& /*console*/) {
  const auto& words = arguments.Operands();
  const bool tree = arguments.Has("--tree");
  if (tree == (words.size() == 3)) throw UsageError("either NAME or --tree is wanted");
  const std::u16string path = KeyPath(words[0], words[1]);
  if (path.find_first_not_of(u'\\', path.find(u'\\')) == std::u16string::npos && tree)
    throw UsageError("a whole hive cannot be deleted");
  const auto branches = BranchesFrom(path);
  if (!branches) throw StreamError("there is no such key: " + words[1]);
  RegistryChange change{RegistryChange::Kind::kRemoveKey, path, {}};
  if (!tree) {
    change = {RegistryChange::Kind::kRemoveValue, path, {FromUtf8(words[2]).Characters(), 0, ""}};
    if (!HasValue(words)) throw StreamError("there is no such value: " + words[2]);
  }
  ApplyChanges(std::span(&change, 1));
  return ExitCode::kSuccess;
}

int Export(const Arguments& arguments, Console& console) {
  const auto& words = arguments.Operands();
  const std::string text = RegFileText(BranchesOf(words, 1));
  if (words.front() == "-") {
    console.Out(text);
    return ExitCode::kSuccess;
  }
  std::ofstream out(PathOf(words.front()), std::ios::binary | std::ios::trunc);
  out << RegFileBytes(text);
  out.close();
  if (!out) throw StreamError("'" + words.front() + "' cannot be written");
  return ExitCode::kSuccess;
}

int Import(const Arguments& arguments, Console& console) {
  const std::string& name = arguments.Operands().front();
  try {
    ApplyChanges(ParseRegFile(ReadInput(name, console)));
  } catch (const RegFileError& error) {
    throw StreamError("'" + name + "', " + error.what());
  }
  return ExitCode::kSuccess;
}

constexpr std::array kCommands{
    Command{"registry",
            "OPERATION",
            "read, write, list and carry over registry values",
            kDetails,
            {},
            nullptr},
    Command{"registry read", "HIVE KEY NAME", "shows a value", kReadDetails, kJsonOptions, Read},
    Command{"registry write", "HIVE KEY NAME [VALUE]", "stores a value", kWriteDetails,
            kWriteOptions, Write},
    Command{"registry list", "[HIVE] [KEY]", "shows a key and all below it", kListDetails,
            kJsonOptions, List},
    Command{"registry delete", "HIVE KEY [NAME]", "takes a value or a key away", kDeleteDetails,
            kDeleteOptions, Delete},
    Command{"registry export",
            "FILE [HIVE] [KEY]",
            "writes a key and all below it to a .reg file",
            kExportDetails,
            {},
            Export},
    Command{
        "registry import", "FILE", "makes the changes of a .reg file", kImportDetails, {}, Import},
};

}  // namespace
}  // namespace registry_family

std::span<const Command> RegistryCommands() { return registry_family::kCommands; }

}  // namespace quorvane::programs
