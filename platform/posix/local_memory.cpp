#include "platform/posix/local_memory.h"

#include <map>
#include <mutex>
#include <utility>

namespace quorvane::local_memory {
namespace {

struct Blocks {
  std::mutex mutex;
  std::map<Address32, std::string> by_address;
  std::uint32_t next = 0x10000;
};

Blocks& blocks() {
  static Blocks instance;
  return instance;
}

}  // namespace

Address32 HandOut(std::string text) {
  Blocks& all = blocks();
  const std::lock_guard lock(all.mutex);
  while (Address32{all.next} == kNoAddress || all.by_address.contains(Address32{all.next})) {
    all.next += 0x10000;
  }
  const Address32 address{all.next};
  all.by_address.emplace(address, std::move(text) + '\0');
  all.next += 0x10000;
  return address;
}

std::string From(Address32 address) {
  Blocks& all = blocks();
  const std::lock_guard lock(all.mutex);
  const auto found = all.by_address.find(address);
  return found == all.by_address.end() ? std::string() : found->second;
}

bool GiveBack(Address32 address) {
  Blocks& all = blocks();
  const std::lock_guard lock(all.mutex);
  return all.by_address.erase(address) > 0;
}

std::size_t BlocksHandedOut() {
  Blocks& all = blocks();
  const std::lock_guard lock(all.mutex);
  return all.by_address.size();
}

}  // namespace quorvane::local_memory
