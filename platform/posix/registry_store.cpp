#include "platform/posix/registry_store.h"

#include "platform/posix/desktop_places.h"

namespace quorvane {
namespace {

RegistryTree TreeFrom(const std::filesystem::path& file, const std::optional<std::string>& bytes) {
  auto tree = bytes ? RegistryTree::From(*bytes) : RegistryTree();
  if (!tree) throw StoreFailure(file.native() + ": damaged, or of a later version");
  return std::move(*tree);
}

}  // namespace

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
