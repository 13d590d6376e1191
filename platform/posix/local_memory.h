#pragma once

#include <cstdint>
#include <string>

#include "platform/address32.h"

namespace quorvane::local_memory {

// The memory that the stand-ins' calls hand out by its address. An address is a number of its own
// here, because a pointer does not fit in 32 bits. Any thread may use it.

/// Keeps the text and its zero until it is given back.
[[nodiscard]] Address32 HandOut(std::string text);
/// A copy of the memory from an address on, up to the block's end with its zero; empty for an
/// address that was not handed out.
[[nodiscard]] std::string From(Address32 address);
/// Whether it was handed out; it is not any more.
bool GiveBack(Address32 address);
/// How many blocks are handed out.
[[nodiscard]] std::size_t BlocksHandedOut();

}  // namespace quorvane::local_memory
