#include "programs/quorvane/stored_registry.h"

#include "platform/posix/registry.h"
#include "platform/posix/system_text.h"
#include "programs/common/console.h"
#include "programs/quorvane/utf16_bytes.h"

namespace quorvane::programs {
namespace {

// The store keeps the bytes of the 8-bit calls.
RegistryEntry EntryOf(const StoredValue& stored) {
  RegistryEntry entry{stored.name, stored.type, stored.data};
  if (entry.IsText()) entry.data = Utf16Bytes(FromSystemPage(stored.data));
  return entry;
}

void Apply(const RegistryChange& change, RegistryTree& tree) {
  const RegistryEntry& value = change.value;
  switch (change.kind) {
    case RegistryChange::Kind::kMakeKey:
      tree.Make(change.path);
      return;
    case RegistryChange::Kind::kRemoveKey:
      tree.RemoveKey(change.path);
      return;
    case RegistryChange::Kind::kRemoveValue:
      tree.RemoveValue(change.path, value.name);
      return;
    case RegistryChange::Kind::kSetValue:
      tree.Set(change.path, value.name, value.type,
               value.IsText() ? ToSystemPage(FromUtf16Bytes(value.data)) : value.data);
  }
}

}  // namespace

std::optional<std::vector<RegistryBranch>> BranchesFrom(const std::u16string& path) {
  try {
    const RegistryTree tree = UserRegistry().Read();
    if (!tree.Has(path)) return std::nullopt;
    std::vector<RegistryBranch> branches;
    for (const RegistryKey* const key : tree.KeysFrom(path)) {
      branches.push_back({key->path, {}});
      for (const auto& [folded, value] : key->values)
        branches.back().values.push_back(EntryOf(value));
    }
    return branches;
  } catch (const StoreFailure& failure) {
    throw StreamError(failure.what());
  }
}

void ApplyChanges(std::span<const RegistryChange> changes) {
  try {
    UserRegistry().Change([changes](RegistryTree& tree) {
      for (const RegistryChange& change : changes) Apply(change, tree);
    });
  } catch (const StoreFailure& failure) {
    throw StreamError(failure.what());
  }
}

}  // namespace quorvane::programs
