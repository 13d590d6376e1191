#pragma once

#include <cstddef>

// What threads need in order to throw when there is no memory: a thread's first exception may well
// tell of just that. Places in the module itself, sixteen for all threads. A thread has one from
// when it first needs it until it has no exception any more; it needs nothing beyond that place to
// get so far, so whoever finds none free waits for its turn.

namespace quorvane::component {

/// A copy of the exception handling's one variable, for this thread; zero at first.
struct ReservedVariable {
  alignas(16) std::byte bytes[16];
};

/// This thread's, or null when it has no place.
[[nodiscard]] ReservedVariable* FindReservedVariable();
/// This thread's; waits for a place when it has none.
[[nodiscard]] ReservedVariable& TakeReservedVariable();

/// Room for one exception, its header included. Null when it would be too large, or when the thread
/// has four there already. Waits as above.
[[nodiscard]] void* TakeReservedException(std::size_t size);
/// False when the block is none of these.
[[nodiscard]] bool GiveBackReservedException(const void* block);

/// Gives this thread's place back if nothing of it is in use. To be called whenever an exception
/// has ended.
void LeaveReserve();

}  // namespace quorvane::component
