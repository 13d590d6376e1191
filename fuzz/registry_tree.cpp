// The text file of the registry's stand-in, and the tree that it holds.
//
// Oracle: a second reader of the file, and a plain list of keys that is searched from its start;
// what is written reads back as the same tree.

#include "platform/posix/registry.h"

#include <cstdlib>
#include <optional>

#include "fuzz/target.h"
#include "platform/posix/system_text.h"
#include "runtime/utf8.h"

namespace quorvane::fuzz::registry_tree {

struct ListedValue {
  std::u16string name;
  std::int32_t type;
  std::string data;
};
struct ListedKey {
  std::vector<std::u16string> path;
  std::vector<ListedValue> values;
};
using List = std::vector<ListedKey>;

bool Equal(std::u16string_view left, std::u16string_view right) {
  return FoldCase(left) == FoldCase(right);
}

std::vector<std::u16string> Names(const std::u16string& path) {
  std::vector<std::u16string> names;
  for (std::size_t start = 0; start <= path.size();) {
    const std::size_t end = std::min(path.find(u'\\', start), path.size());
    if (end > start) names.push_back(path.substr(start, end - start));
    start = end + 1;
  }
  return names;
}

bool IsIn(const std::vector<std::u16string>& above, const std::vector<std::u16string>& path) {
  if (above.size() > path.size()) return false;
  for (std::size_t i = 0; i < above.size(); ++i)
    if (!Equal(above[i], path[i])) return false;
  return true;
}

ListedKey* FindKey(List& list, const std::vector<std::u16string>& path) {
  for (ListedKey& key : list)
    if (key.path.size() == path.size() && IsIn(key.path, path)) return &key;
  return nullptr;
}

// Each parent as it was first written, which the keys below it may spell otherwise.
bool Make(List& list, const std::vector<std::u16string>& path) {
  if (FindKey(list, path) != nullptr) return false;
  for (std::size_t length = 1; length <= path.size(); ++length) {
    const std::vector<std::u16string> part(path.begin(), path.begin() + static_cast<int>(length));
    if (FindKey(list, part) == nullptr) list.push_back({part, {}});
  }
  return true;
}

ListedValue* FindValue(ListedKey* key, const std::u16string& name) {
  if (key == nullptr) return nullptr;
  for (ListedValue& value : key->values)
    if (Equal(value.name, name)) return &value;
  return nullptr;
}

void Set(List& list, const std::vector<std::u16string>& path, const ListedValue& value) {
  Make(list, path);
  ListedKey* const key = FindKey(list, path);
  if (ListedValue* const old = FindValue(key, value.name)) {
    old->type = value.type;
    old->data = value.data;
  } else {
    key->values.push_back(value);
  }
}

std::u16string Joined(const std::vector<std::u16string>& names) {
  std::u16string path;
  for (const std::u16string& name : names) path += (path.empty() ? u"" : u"\\") + name;
  return path;
}

void CheckSame(const RegistryTree& tree, List& list) {
  std::size_t values = 0;
  const auto keys = tree.KeysFrom(u"");
  Require(keys.size() == list.size(), "the number of keys");
  for (const RegistryKey* const key : keys) {
    ListedKey* const listed = FindKey(list, Names(key->path));
    Require(listed != nullptr && Joined(listed->path) == key->path, "a key");
    Require(listed->values.size() == key->values.size(), "the number of a key's values");
    for (const auto& [folded, value] : key->values) {
      const ListedValue* const other = FindValue(listed, value.name);
      Require(other != nullptr && other->name == value.name && other->type == value.type &&
                  other->data == value.data,
              "a value");
      ++values;
    }
  }
  const std::string bytes = tree.Bytes();
  const auto again = RegistryTree::From(bytes);
  Require(again && again->Bytes() == bytes, "what is written reads back as another tree");
  Require(std::ranges::count(bytes, '\n') == static_cast<std::ptrdiff_t>(2 + keys.size() + values),
          "the lines of the file");
}

// --- the file

std::optional<std::string> WithoutPercents(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789ABCDEFabcdef";
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      bytes += text[i];
      continue;
    }
    const std::string digits(text.substr(i + 1, 2));
    if (digits.size() != 2 || digits.find_first_not_of(kDigits) < 2) return std::nullopt;
    bytes += static_cast<char>(std::strtol(digits.c_str(), nullptr, 16));
    i += 2;
  }
  return bytes;
}

std::optional<std::u16string> NameIn(std::string_view text) {
  const auto bytes = WithoutPercents(text);
  if (!bytes || ToUtf8(FromUtf8(*bytes)) != *bytes) return std::nullopt;
  return FromUtf8(*bytes).Characters();
}

std::optional<std::int32_t> DecimalIn(const std::string& word) {
  const std::string digits = word.starts_with('-') ? word.substr(1) : word;
  if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos) return {};
  const long double value = std::strtold(word.c_str(), nullptr);
  if (value < -2147483648.0L || value > 2147483647.0L) return std::nullopt;
  return static_cast<std::int32_t>(value);
}

// Nothing for a damaged file.
std::optional<List> ReadFile(const std::string& bytes) {
  std::vector<std::string> lines;
  for (std::size_t start = 0; start < bytes.size();) {
    const std::size_t end = bytes.find('\n', start);
    if (end == std::string::npos) return std::nullopt;
    lines.push_back(bytes.substr(start, end - start));
    start = end + 1;
  }
  if (lines.size() < 2 || lines.front() != "quorvane registry 1" || lines.back() != "end")
    return {};
  List list;
  std::vector<std::u16string> path;
  bool has_path = false;
  for (std::size_t i = 1; i + 1 < lines.size(); ++i) {
    const std::string& line = lines[i];
    const std::size_t sign = line.find('=');
    const std::size_t colon = sign == std::string::npos ? sign : line.find(':', sign);
    if (line.starts_with('[') && line.ends_with(']')) {
      const auto name = NameIn(line.substr(1, line.size() - 2));
      if (!name || Names(*name).empty()) return std::nullopt;
      path = Names(*name);
      has_path = true;
      Make(list, path);
    } else {
      if (!has_path || colon == std::string::npos) return std::nullopt;
      const auto name = NameIn(line.substr(0, sign));
      const auto type = DecimalIn(line.substr(sign + 1, colon - sign - 1));
      const auto data = WithoutPercents(line.substr(colon + 1));
      if (!name || !type || !data) return std::nullopt;
      Set(list, path, {*name, *type, *data});
    }
  }
  return list;
}

void CheckFile(const std::string& bytes) {
  const auto tree = RegistryTree::From(bytes);
  auto list = ReadFile(bytes);
  Require(tree.has_value() == list.has_value(), "whether the file is whole");
  if (tree) CheckSame(*tree, *list);
}

// --- changes

// As a call brings it: in the system's page, up to its zero.
std::u16string CallersText(Input& input) {
  std::string bytes = input.Bytes(input.Byte(7));
  std::erase(bytes, '\0');
  return FromSystemPage(bytes);
}

void CheckChanges(Input& input) {
  RegistryTree tree;
  List list;
  for (int change = 0; change < 12 && !input.IsEmpty(); ++change) {
    const std::uint8_t kind = input.Byte(5);
    // A hive, then what the caller says.
    const std::u16string path = (input.Byte(1) == 0 ? u"H\\" : u"h\\\\") + CallersText(input);
    const std::u16string name = CallersText(input);
    const auto names = Names(path);
    ListedKey* const key = FindKey(list, names);
    const ListedValue* const value = FindValue(key, name);
    const StoredValue* const found = tree.Find(path, name);
    Require((found != nullptr) == (value != nullptr), "Find()");
    Require(found == nullptr || found->data == value->data, "what Find() gives");
    Require(tree.Has(path) == (names.size() == 1 || key != nullptr), "Has()");
    if (kind == 0) {
      Require(tree.Make(path) == Make(list, names), "Make()");
    } else if (kind == 1) {
      Require(tree.RemoveKey(path) ==
                  (std::erase_if(list,
                                 [&](const ListedKey& one) { return IsIn(names, one.path); }) > 0),
              "RemoveKey()");
    } else if (kind == 2) {
      const bool is_there = value != nullptr;
      Require(tree.RemoveValue(path, name) == is_there, "RemoveValue()");
      if (is_there) key->values.erase(key->values.begin() + (value - key->values.data()));
    } else {
      const std::int32_t type = input.Byte(15);
      const std::string data = input.Bytes(input.Byte(15));
      tree.Set(path, name, type, data);
      Set(list, names, {name, type, data});
    }
  }
  CheckSame(tree, list);
}

void Run(Input input) {
  if (input.Byte(1) == 0) return CheckFile(input.Rest());
  CheckChanges(input);
}

const Registered kTarget("registry_tree", Run);

}  // namespace quorvane::fuzz::registry_tree
