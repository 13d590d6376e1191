#pragma once

#include <filesystem>
#include <functional>
#include <utility>

#include "platform/posix/atomic_file.h"
#include "platform/posix/registry_tree.h"

namespace quorvane {

/// The registry in one text file. Nothing is kept open between two calls, so any number of programs
/// and threads may use it. Each operation throws StoreFailure.
class RegistryStore {
 public:
  explicit RegistryStore(std::filesystem::path file) : file_(std::move(file)) {}

  /// What is there now; an empty registry where there is no file. Makes nothing, locks nothing.
  [[nodiscard]] RegistryTree Read() const;
  /// Makes all of `change` at once, after the changes of other programs and before any later one;
  /// makes the file and its folder, for the user alone, where there is something to be kept.
  /// A damaged file is left alone.
  void Change(const std::function<void(RegistryTree&)>& change) const;

 private:
  std::filesystem::path file_;
};

/// The store that the registry calls use: registry.txt in the folder of the user's data.
[[nodiscard]] RegistryStore UserRegistry();

}  // namespace quorvane
