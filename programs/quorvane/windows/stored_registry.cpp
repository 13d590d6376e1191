#include "programs/quorvane/stored_registry.h"

#include <windows.h>

#include <algorithm>

#include "programs/common/console.h"
#include "programs/common/windows/system_message.h"
#include "programs/quorvane/registry_hives.h"
#include "runtime/utf8.h"

namespace quorvane::programs {
namespace {

const wchar_t* Wide(const std::u16string& text) {
  return reinterpret_cast<const wchar_t*>(text.c_str());
}

// Names of keys have 255 characters at most, those of values 16383.
using NameBuffer = std::u16string;
wchar_t* Room(NameBuffer& buffer) { return reinterpret_cast<wchar_t*>(buffer.data()); }
constexpr std::size_t kNameSize = 16384;

void Require(LSTATUS result, const std::u16string& path) {
  if (result != ERROR_SUCCESS)
    throw StreamError(ToUtf8(Text(path)) + ": " + SystemMessage(static_cast<DWORD>(result)));
}

class OpenKey {
 public:
  OpenKey() = default;
  OpenKey(const OpenKey&) = delete;
  OpenKey& operator=(const OpenKey&) = delete;
  ~OpenKey() {
    if (key_ != nullptr) ::RegCloseKey(key_);
  }
  [[nodiscard]] HKEY Get() const { return key_; }
  [[nodiscard]] HKEY* Slot() { return &key_; }

 private:
  HKEY key_ = nullptr;
};

struct Place {
  HKEY hive;
  std::u16string below;
};

Place PlaceOf(const std::u16string& path) {
  const std::size_t end = std::min(path.find(u'\\'), path.size());
  const auto hive = HiveNamed(ToUtf8(Text(path.substr(0, end))));
  if (!hive) throw StreamError(ToUtf8(Text(path)) + ": no such hive");
  const auto handle = static_cast<std::uintptr_t>(hive->handle);
  return {reinterpret_cast<HKEY>(handle), path.substr(std::min(end + 1, path.size()))};
}

bool Open(const std::u16string& path, REGSAM access, OpenKey& key) {
  const Place place = PlaceOf(path);
  const LSTATUS result = ::RegOpenKeyExW(place.hive, Wide(place.below), 0, access, key.Slot());
  if (result == ERROR_FILE_NOT_FOUND) return false;
  Require(result, path);
  return true;
}

std::vector<RegistryEntry> ValuesOf(HKEY key, const std::u16string& path) {
  std::vector<RegistryEntry> values;
  for (DWORD index = 0;; ++index) {
    NameBuffer name(kNameSize, u'\0');
    auto length = static_cast<DWORD>(name.size());
    DWORD type = 0;
    DWORD size = 0;
    const LSTATUS result =
        ::RegEnumValueW(key, index, Room(name), &length, nullptr, &type, nullptr, &size);
    if (result == ERROR_NO_MORE_ITEMS) return values;
    Require(result, path);
    name.resize(length);
    std::string data(size, '\0');
    Require(::RegQueryValueExW(key, Wide(name), nullptr, &type,
                               reinterpret_cast<BYTE*>(data.data()), &size),
            path);
    data.resize(size);
    values.push_back({name, static_cast<std::int32_t>(type), data});
  }
}

std::vector<std::u16string> KeysBelow(HKEY key, const std::u16string& path) {
  std::vector<std::u16string> names;
  for (DWORD index = 0;; ++index) {
    NameBuffer name(kNameSize, u'\0');
    auto length = static_cast<DWORD>(name.size());
    const LSTATUS result =
        ::RegEnumKeyExW(key, index, Room(name), &length, nullptr, nullptr, nullptr, nullptr);
    if (result == ERROR_NO_MORE_ITEMS) return names;
    Require(result, path);
    name.resize(length);
    names.push_back(name);
  }
}

bool Collect(const std::u16string& path, std::vector<RegistryBranch>& branches) {
  OpenKey key;
  if (!Open(path, KEY_READ, key)) return false;
  branches.push_back({path, ValuesOf(key.Get(), path)});
  // A key that went away meanwhile is none.
  for (const std::u16string& name : KeysBelow(key.Get(), path))
    static_cast<void>(Collect(path + u'\\' + name, branches));
  return true;
}

void RemoveKey(const std::u16string& path) {
  {
    OpenKey key;
    if (!Open(path, KEY_READ, key)) return;
    for (const std::u16string& name : KeysBelow(key.Get(), path)) RemoveKey(path + u'\\' + name);
  }
  const Place place = PlaceOf(path);
  Require(::RegDeleteKeyW(place.hive, Wide(place.below)), path);
}

void RemoveValue(const std::u16string& path, const std::u16string& name) {
  OpenKey key;
  if (!Open(path, KEY_SET_VALUE, key)) return;
  const LSTATUS result = ::RegDeleteValueW(key.Get(), Wide(name));
  if (result != ERROR_FILE_NOT_FOUND) Require(result, path);
}

void Make(const std::u16string& path, OpenKey& key) {
  const Place place = PlaceOf(path);
  Require(::RegCreateKeyExW(place.hive, Wide(place.below), 0, nullptr, 0, KEY_SET_VALUE, nullptr,
                            key.Slot(), nullptr),
          path);
}

void Apply(const RegistryChange& change) {
  OpenKey key;
  const RegistryEntry& value = change.value;
  switch (change.kind) {
    case RegistryChange::Kind::kRemoveKey:
      return RemoveKey(change.path);
    case RegistryChange::Kind::kRemoveValue:
      return RemoveValue(change.path, value.name);
    case RegistryChange::Kind::kMakeKey:
      return Make(change.path, key);
    case RegistryChange::Kind::kSetValue:
      Make(change.path, key);
      Require(::RegSetValueExW(key.Get(), Wide(value.name), 0, static_cast<DWORD>(value.type),
                               reinterpret_cast<const BYTE*>(value.data.data()),
                               static_cast<DWORD>(value.data.size())),
              change.path);
  }
}

}  // namespace

std::optional<std::vector<RegistryBranch>> BranchesFrom(const std::u16string& path) {
  std::vector<RegistryBranch> branches;
  if (!Collect(path, branches)) return std::nullopt;
  return branches;
}

void ApplyChanges(std::span<const RegistryChange> changes) {
  for (const RegistryChange& change : changes) Apply(change);
}

}  // namespace quorvane::programs
