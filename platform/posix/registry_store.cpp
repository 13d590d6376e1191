#include "platform/posix/registry_store.h"

#include <cerrno>
#include <cstring>

#include "platform/posix/atomic_file.h"
#include "platform/posix/desktop_places.h"

namespace quorvane {
namespace {

[[noreturn]] void Fail(const std::filesystem::path& file, int error) {
  const char* const reason =
      error == EBADMSG ? "damaged, or of a later version" : std::strerror(error);
  throw StoreFailure(file.native() + ": " + reason);
}

RegistryTree TreeFrom(const std::filesystem::path& file, const std::optional<std::string>& bytes) {
  auto tree = bytes ? RegistryTree::From(*bytes) : RegistryTree();
  if (!tree) Fail(file, EBADMSG);
  return std::move(*tree);
}

}  // namespace

RegistryTree RegistryStore::Read() const {
  std::optional<std::string> bytes;
  const int error = ReadFile(file_, bytes);
  if (error != 0 && error != ENOENT && error != ENOTDIR) Fail(file_, error);
  return TreeFrom(file_, bytes);
}

void RegistryStore::Change(const std::function<void(RegistryTree&)>& change) const {
  CreatePrivateFolder(file_.parent_path());
  const int error = ChangeFile(file_, 0600, [&](const std::optional<std::string>& before) {
    RegistryTree tree = TreeFrom(file_, before);
    change(tree);
    return tree.Bytes();
  });
  if (error != 0) Fail(file_, error);
}

RegistryStore UserRegistry() { return RegistryStore(DataFolder() / "registry.txt"); }

}  // namespace quorvane
