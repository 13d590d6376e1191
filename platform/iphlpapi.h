#pragma once

#include <cstdint>

#include "platform/address32.h"

namespace quorvane {

/// Calls of the system's library for network adapters, under their own names; results are handed
/// back raw.
class Iphlpapi {
 public:
  virtual ~Iphlpapi() = default;

  /// Fills the block with a chain of IP_ADAPTER_INFO records (640 bytes each, in the layout of the
  /// 32-bit platform, whatever the host) and gives 0. Any other result is a failure: then `size`
  /// holds the size needed, which is 0 when there is no adapter. A null block asks for that size.
  /// Raises library not found (48) or entry point not found (453) on a system without this call.
  [[nodiscard]] virtual std::int32_t GetAdaptersInfo(void* block, std::int32_t* size) = 0;

  /// The address that the links of a chain use for the start of the block.
  [[nodiscard]] virtual Address32 AddressOf(const void* block) = 0;
};

/// The platform's own, on Linux its stand-in. It lives as long as the program.
[[nodiscard]] Iphlpapi& iphlpapi() noexcept;

}  // namespace quorvane
