// The .reg files that the command line imports and exports.
//
// Oracle: the same text must mean the same in every encoding, with every kind of line end, and with
// comments between its lines; what it asks for, written as a file, must ask for the same again; and
// values that are set must come back as they were, whatever their type and bytes.

#include "programs/quorvane/reg_file.h"

#include <optional>

#include "fuzz/target.h"
#include "programs/quorvane/utf16_bytes.h"
#include "runtime/utf8.h"

namespace quorvane::fuzz::reg_file {

using programs::ParseRegFile;
using programs::RegFileError;
using programs::RegistryBranch;
using programs::RegistryChange;
using programs::RegistryEntry;
using Kind = RegistryChange::Kind;

bool Same(const RegistryChange& left, const RegistryChange& right) {
  return left.kind == right.kind && left.path == right.path &&
         left.value.name == right.value.name && left.value.type == right.value.type &&
         left.value.data == right.value.data;
}

// Nothing for what is no such file.
std::optional<std::vector<RegistryChange>> Read(const std::string& bytes) {
  try {
    return ParseRegFile(bytes);
  } catch (const RegFileError& error) {
    Require(std::string_view(error.what()).starts_with("line "), "the error names no line");
    return std::nullopt;
  }
}

void RequireSame(const std::optional<std::vector<RegistryChange>>& left,
                 const std::optional<std::vector<RegistryChange>>& right, std::string_view what) {
  Require(left.has_value() == right.has_value(), what);
  if (left) Require(std::ranges::equal(*left, *right, Same), what);
}

bool HasUtf8(const std::u16string& text) { return FromUtf8(ToUtf8(Text(text))) == Text(text); }

// Each key and value that a file asks to make, as branches of their own; nothing where one of them
// has no bytes in a file.
std::vector<RegistryBranch> BranchesOf(const std::vector<RegistryChange>& changes) {
  std::vector<RegistryBranch> branches;
  for (const RegistryChange& change : changes) {
    if (!HasUtf8(change.path) || !HasUtf8(change.value.name)) return {};
    if (change.kind == Kind::kMakeKey) branches.push_back({change.path, {}});
    if (change.kind == Kind::kSetValue) branches.push_back({change.path, {change.value}});
  }
  return branches;
}

void CheckWritten(const std::vector<RegistryBranch>& branches) {
  const std::string text = programs::RegFileText(branches);
  const auto changes = Read(text);
  Require(changes.has_value(), "what is written cannot be read");
  RequireSame(changes, Read(programs::RegFileBytes(text)), "UTF-16 says something else");
  std::size_t next = 0;
  const auto take = [&](const RegistryChange& expected, std::string_view what) {
    Require(next < changes->size() && Same((*changes)[next], expected), what);
    ++next;
  };
  for (const RegistryBranch& branch : branches) {
    take({Kind::kMakeKey, branch.path, {}}, "a key that was written");
    for (const RegistryEntry& value : branch.values)
      take({Kind::kSetValue, branch.path, value}, "a value that was written");
  }
  Require(next == changes->size(), "more than was written");
}

void CheckRead(const std::string& bytes) {
  const auto changes = Read(bytes);
  if (changes) CheckWritten(BranchesOf(*changes));
  const Text text = FromUtf8(bytes);
  if (ToUtf8(text) != bytes || bytes.starts_with("\xEF\xBB\xBF")) return;
  RequireSame(changes, Read("\xEF\xBB\xBF" + bytes), "a mark changes the meaning");
  RequireSame(changes, Read("\xFF\xFE" + programs::Utf16Bytes(text.Characters())),
              "UTF-16 changes the meaning");
  std::string with_returns;
  for (const char c : bytes) with_returns.append(c == '\n' ? "\r\n" : std::string(1, c));
  RequireSame(changes, Read(with_returns), "other line ends change the meaning");
}

// Values of any type and bytes, under names of any characters that a line can hold.
void CheckValues(Input& input) {
  std::vector<RegistryBranch> branches;
  while (!input.IsEmpty()) {
    RegistryBranch branch{u"HKEY_CURRENT_USER\\" + input.Characters(input.Byte(15)), {}};
    for (std::size_t count = input.Byte(3); count > 0; --count) {
      RegistryEntry value;
      value.name = input.Characters(input.Byte(15));
      value.type = input.Byte() < 250 ? input.Byte(11) : input.Number32();
      value.data = input.Bytes(input.Byte(31));
      std::erase(value.name, u'\n');
      if (HasUtf8(value.name)) branch.values.push_back(value);
    }
    std::erase(branch.path, u'\n');
    if (HasUtf8(branch.path)) branches.push_back(branch);
  }
  CheckWritten(branches);
}

void Run(Input input) {
  if (input.Byte(1) == 0) return CheckRead(input.Rest());
  CheckValues(input);
}

const Registered kTarget("reg_file", Run);

}  // namespace quorvane::fuzz::reg_file
