#include "platform/posix/local_memory.h"

#include <map>
#include <mutex>
#include <utility>

namespace quorvane::local_memory {
namespace {

// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables): memory is the whole program's
std::mutex mutex;
std::map<Address32, std::string> blocks;
std::uint32_t next = 0;
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)

}  // namespace

Address32 HandOut(std::string text) {
  const std::lock_guard lock(mutex);
  do {
    next += 0x10000;
  } while (Address32{next} == kNoAddress || blocks.contains(Address32{next}));
  blocks.emplace(Address32{next}, std::move(text) + '\0');
  return Address32{next};
}

std::string From(Address32 address) {
  const std::lock_guard lock(mutex);
  const auto found = blocks.find(address);
  return found == blocks.end() ? std::string() : found->second;
}

bool GiveBack(Address32 address) {
  const std::lock_guard lock(mutex);
  return blocks.erase(address) > 0;
}

std::size_t BlocksHandedOut() {
  const std::lock_guard lock(mutex);
  return blocks.size();
}

}  // namespace quorvane::local_memory
