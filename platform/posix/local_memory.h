#pragma once

#include <string>

#include "platform/address32.h"
#include "platform/posix/handle_table.h"

namespace quorvane {

/// The memory that the stand-ins' calls hand out by its address: texts, each with its zero.
inline HandleTable<Address32, std::string>& localMemory() {
  static HandleTable<Address32, std::string> memory;
  return memory;
}

}  // namespace quorvane
