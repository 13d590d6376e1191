#pragma once

#include "tests/support/component/module_under_test.h"

namespace quorvane::component {

/// Memory in pages of its own: each block ends where a page without rights begins, and a block
/// given back loses its rights at once and for long, so that whoever reads or writes behind a
/// block, or in one that was given back, meets an access violation there and then.
///
/// Ends the process, with a line that says why, when a block is given back that is not held, or was
/// written to in the few bytes that rounding leaves behind it.
namespace guarded_memory {

[[nodiscard]] void* Take(std::size_t size);
void Give(void* block);
/// How many blocks are held at this moment.
[[nodiscard]] int Blocks();

}  // namespace guarded_memory

/// A copy of the module that nobody has used yet and whose memory is guarded, from its first block
/// to its last; with the end of this object it is unloaded.
class GuardedModule {
 public:
  GuardedModule();
  GuardedModule(const GuardedModule&) = delete;
  GuardedModule& operator=(const GuardedModule&) = delete;
  ~GuardedModule();

  const Module& Get() const { return module_.Get(); }

 private:
  FreshModule module_;
  testing::ReplacedImport replaced_[6];
};

}  // namespace quorvane::component
