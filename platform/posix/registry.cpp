#include "platform/posix/registry.h"

#include <algorithm>
#include <charconv>
#include <sstream>

#include "platform/posix/account.h"
#include "platform/posix/system_text.h"
#include "runtime/utf8.h"

namespace quorvane {
namespace {

constexpr std::string_view kFirstLine = "quorvane registry 1";
constexpr std::string_view kLastLine = "end";

// Without what of its "\" does not count.
std::u16string PlainPath(std::u16string_view path) {
  std::u16string plain;
  for (const char16_t character : path) {
    const bool counts = !plain.empty() && plain.back() != u'\\';
    if (character != u'\\' || counts) plain += character;
  }
  if (plain.ends_with(u'\\')) plain.pop_back();
  return plain;
}

// "%" and two digits for a byte that would be taken for something else; above 127 if so wanted.
std::string Escaped(std::string_view bytes, bool high_ones_too) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string escaped;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    const bool is_plain = byte < 0x80 ? byte >= 0x20 && byte != 0x7F : !high_ones_too;
    if (is_plain && c != '%' && c != '=' && c != '[') {
      escaped += c;
    } else {
      escaped.append({'%', kDigits[byte >> 4U], kDigits[byte & 15U]});
    }
  }
  return escaped;
}

std::string NameText(const std::u16string& name) { return Escaped(ToUtf8(name), false); }

template <class Number>
bool ReadNumber(std::string_view digits, int base, Number& number) {
  const char* const end = digits.data() + digits.size();
  const auto [rest, error] = std::from_chars(digits.data(), end, number, base);
  return error == std::errc() && rest == end;
}

std::optional<std::string> Unescaped(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    auto byte = static_cast<unsigned char>(text.front());
    const bool is_escaped = byte == '%';
    if (is_escaped && (text.size() < 3 || !ReadNumber(text.substr(1, 2), 16, byte))) return {};
    bytes += static_cast<char>(byte);
    text.remove_prefix(is_escaped ? 3 : 1);
  }
  return bytes;
}

std::optional<std::u16string> NameFrom(std::string_view text) {
  const auto bytes = Unescaped(text);
  const Text name = bytes ? FromUtf8(*bytes) : Text();
  if (!bytes || ToUtf8(name) != *bytes) return std::nullopt;
  return name.Characters();
}

// name=type:data
std::optional<StoredValue> ValueFrom(std::string_view line) {
  const std::size_t sign = std::min(line.find('='), line.size());
  const std::size_t colon = line.find(':', sign);
  if (colon == std::string_view::npos) return std::nullopt;
  const auto name = NameFrom(line.substr(0, sign));
  const auto data = Unescaped(line.substr(colon + 1));
  std::int32_t type = 0;
  if (!name || !data || !ReadNumber(line.substr(sign + 1, colon - sign - 1), 10, type)) return {};
  return StoredValue{*name, type, *data};
}

RegistryTree TreeFrom(const std::filesystem::path& file, const std::optional<std::string>& bytes) {
  auto tree = bytes ? RegistryTree::From(*bytes) : RegistryTree();
  if (!tree) throw StoreFailure(file.native() + ": damaged, or of a later version");
  return std::move(*tree);
}

}  // namespace

bool RegistryTree::Has(std::u16string_view path) const {
  const std::u16string plain = PlainPath(path);
  return plain.find(u'\\') == std::u16string::npos || keys_.contains(FoldCase(plain));
}

const StoredValue* RegistryTree::Find(std::u16string_view path, std::u16string_view name) const {
  const auto key = keys_.find(FoldCase(PlainPath(path)));
  if (key == keys_.end()) return nullptr;
  const auto value = key->second.values.find(FoldCase(name));
  return value != key->second.values.end() ? &value->second : nullptr;
}

std::vector<const RegistryKey*> RegistryTree::KeysFrom(std::u16string_view path) const {
  const std::u16string folded = FoldCase(PlainPath(path));
  std::vector<const RegistryKey*> found;
  for (const auto& [key_path, key] : keys_) {
    const bool is_below = folded.empty() || key_path.starts_with(folded + u'\\');
    if (is_below || key_path == folded) found.push_back(&key);
  }
  return found;
}

bool RegistryTree::Make(std::u16string_view path) {
  const std::u16string plain = PlainPath(path);
  const std::size_t sign = plain.rfind(u'\\');
  if (sign != std::u16string::npos && !keys_.contains(FoldCase(plain))) Make(plain.substr(0, sign));
  return keys_.try_emplace(FoldCase(plain), RegistryKey{plain, {}}).second;
}

void RegistryTree::Set(std::u16string_view path, std::u16string_view name, std::int32_t type,
                       std::string_view data) {
  Make(path);
  RegistryKey& key = keys_.at(FoldCase(PlainPath(path)));
  StoredValue& value =
      key.values.try_emplace(FoldCase(name), StoredValue{std::u16string(name), 0, ""})
          .first->second;
  value.type = type;
  value.data = data;
}

bool RegistryTree::RemoveValue(std::u16string_view path, std::u16string_view name) {
  const auto key = keys_.find(FoldCase(PlainPath(path)));
  return key != keys_.end() && key->second.values.erase(FoldCase(name)) > 0;
}

bool RegistryTree::RemoveKey(std::u16string_view path) {
  const auto gone = KeysFrom(path);
  for (const RegistryKey* const key : gone) keys_.erase(FoldCase(key->path));
  return !gone.empty();
}

std::string RegistryTree::Bytes() const {
  std::string bytes = std::string(kFirstLine) + '\n';
  for (const auto& [folded, key] : keys_) {
    bytes += "[" + NameText(key.path) + "]\n";
    for (const auto& [folded_name, value] : key.values) {
      bytes += NameText(value.name) + "=" + std::to_string(value.type) + ":" +
               Escaped(value.data, true) + "\n";
    }
  }
  return bytes.append(kLastLine) + '\n';
}

std::optional<RegistryTree> RegistryTree::From(std::string_view bytes) {
  std::istringstream lines{std::string(bytes)};
  std::string line;
  if (!std::getline(lines, line) || line != kFirstLine) return std::nullopt;
  RegistryTree tree;
  std::u16string path;
  // The last line has its end, too.
  while (std::getline(lines, line) && !lines.eof()) {
    if (line == kLastLine && lines.peek() == std::istringstream::traits_type::eof()) return tree;
    if (line.starts_with('[') && line.ends_with(']')) {
      path = PlainPath(NameFrom(line.substr(1, line.size() - 2)).value_or(u""));
      if (path.empty()) return std::nullopt;
      tree.Make(path);
    } else {
      const auto value = ValueFrom(line);
      if (path.empty() || !value) return std::nullopt;
      tree.Set(path, value->name, value->type, value->data);
    }
  }
  return std::nullopt;
}

RegistryTree RegistryStore::Read() const { return TreeFrom(file_, ReadFile(file_)); }

void RegistryStore::Change(const std::function<void(RegistryTree&)>& change) const {
  CreatePrivateFolder(file_.parent_path());
  ChangeFile(file_, 0600, [&](const std::optional<std::string>& before) {
    RegistryTree tree = TreeFrom(file_, before);
    change(tree);
    return tree.Bytes();
  });
}

RegistryStore UserRegistry() { return RegistryStore(DataFolder() / "registry.txt"); }

}  // namespace quorvane
