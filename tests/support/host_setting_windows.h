#pragma once

#include <float.h>

namespace quorvane::testing {

/// The x87 unit as a host left it, until the end of the scope: a value of the C library's _PC_,
/// _RC_ and _EM_ bits under a mask of them.
class HostSetting {
 public:
  HostSetting(unsigned value, unsigned mask) {
    ::_clearfp();
    ::_controlfp(value, mask);
  }
  HostSetting(const HostSetting&) = delete;
  HostSetting& operator=(const HostSetting&) = delete;
  ~HostSetting() {
    ::_clearfp();
    ::_controlfp(_CW_DEFAULT, _MCW_PC | _MCW_RC | _MCW_EM);
  }
};

/// Calls `body` under every precision and every way of rounding.
template <class Body>
void UnderEveryHostSetting(Body body) {
  for (const unsigned precision : {0U | _PC_24, 0U | _PC_53, 0U | _PC_64}) {
    for (const unsigned rounding : {0U | _RC_NEAR, 0U | _RC_UP, 0U | _RC_DOWN, 0U | _RC_CHOP}) {
      const HostSetting setting(precision | rounding, _MCW_PC | _MCW_RC);
      body();
    }
  }
}

}  // namespace quorvane::testing
