#include "control/crt/thread_reserve.h"

#include <cstring>

#include "platform/windows/os_headers.h"

namespace quorvane::component {
namespace {

struct alignas(8) Exception {
  std::byte bytes[256];
};

constexpr int kExceptions = 4;

struct Place {
  ReservedVariable variable;
  Exception exceptions[kExceptions];
  bool is_taken[kExceptions];
  LONG volatile thread;  // 0: nobody's, as it is no thread's id
};

constinit Place places[16]{};

LONG ThisThread() { return static_cast<LONG>(::GetCurrentThreadId()); }

Place* FindPlace() {
  for (Place& place : places) {
    if (place.thread == ThisThread()) return &place;
  }
  return nullptr;
}

// Kept: without memory sixteen threads at a time get as far as to say so; the others wait for them,
// as the exception handling could only end the host. Pinned by
// Exhaustion.MoreThreadsAtOnceThanTheReserveServesWaitForEachOther.
Place& TakePlace() {
  if (Place* const own = FindPlace()) return *own;
  for (;;) {
    for (Place& place : places) {
      if (::InterlockedCompareExchange(&place.thread, ThisThread(), 0) == 0) return place;
    }
    ::Sleep(1);
  }
}

bool IsInUse(const Place& place) {
  for (const bool is_taken : place.is_taken) {
    if (is_taken) return true;
  }
  constexpr ReservedVariable kUnused{};
  return std::memcmp(&place.variable, &kUnused, sizeof kUnused) != 0;
}

}  // namespace

ReservedVariable* FindReservedVariable() {
  Place* const place = FindPlace();
  return place != nullptr ? &place->variable : nullptr;
}

ReservedVariable& TakeReservedVariable() { return TakePlace().variable; }

void* TakeReservedException(std::size_t size) {
  if (size > sizeof(Exception)) return nullptr;
  Place& place = TakePlace();
  for (int i = 0; i < kExceptions; ++i) {
    if (place.is_taken[i]) continue;
    place.is_taken[i] = true;
    return &place.exceptions[i];
  }
  return nullptr;
}

bool GiveBackReservedException(const void* block) {
  for (Place& place : places) {
    for (int i = 0; i < kExceptions; ++i) {
      if (block != &place.exceptions[i]) continue;
      place.is_taken[i] = false;
      return true;
    }
  }
  return false;
}

void LeaveReserve() {
  Place* const place = FindPlace();
  if (place != nullptr && !IsInUse(*place)) ::InterlockedExchange(&place->thread, 0);
}

}  // namespace quorvane::component
