#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "platform/address32.h"

namespace quorvane {

/// What the stand-ins' calls hand out by number: handles, and addresses, since a pointer does not
/// fit in 32 bits. A number is above 0 and below 2^31, and lies 256 away from every other one of
/// its table. Any thread may use a table.
template <class Number, class Object>
class HandleTable {
 public:
  /// Keeps the object until it is removed; its number.
  [[nodiscard]] Number Add(Object object) {
    const std::lock_guard lock(mutex_);
    do {
      latest_ = (latest_ + 0x100) & 0x7FFFFF00;
    } while (latest_ == 0 || objects_.contains(Number(latest_)));
    objects_.emplace(Number(latest_), std::move(object));
    return Number(latest_);
  }

  /// A copy of the object; nothing for a number that was not handed out.
  [[nodiscard]] std::optional<Object> Find(Number number) {
    const std::lock_guard lock(mutex_);
    const auto found = objects_.find(number);
    return found != objects_.end() ? std::optional(found->second) : std::nullopt;
  }

  /// The object, which the table has no longer; nothing for a number that was not handed out.
  std::optional<Object> Remove(Number number) {
    const std::lock_guard lock(mutex_);
    auto taken = objects_.extract(number);
    return taken ? std::optional(std::move(taken.mapped())) : std::nullopt;
  }

 private:
  std::mutex mutex_;
  std::map<Number, Object> objects_;
  std::uint32_t latest_ = 0;
};

/// The memory that the stand-ins' calls hand out by its address: texts, each with its zero.
inline HandleTable<Address32, std::string>& localMemory() {
  static HandleTable<Address32, std::string> memory;
  return memory;
}

}  // namespace quorvane
