#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/address32.h"

namespace quorvane {

/// The published record IP_ADAPTER_INFO in the layout of the 32-bit platform, whatever the host.
struct AdapterInfoRecord {
  struct IpText {
    std::uint32_t next;
    std::array<char, 16> address;
    std::array<char, 16> mask;
    std::uint32_t context;
  };
  std::uint32_t next;
  std::uint32_t combo_index;
  std::array<char, 260> name;
  std::array<char, 132> description;
  std::uint32_t address_length;
  std::array<std::uint8_t, 8> address;
  std::uint32_t index;
  std::uint32_t type;
  std::uint32_t dhcp_enabled;
  std::uint32_t current_ip_address;
  IpText ip_addresses;
  std::array<std::byte, 172> unused;  ///< gateways, DHCP, name servers, leases: zeros here
};
static_assert(sizeof(AdapterInfoRecord) == 640);
static_assert(offsetof(AdapterInfoRecord, address) == 404);

/// The adapters that the kernel knows, up or down, in its own order; the loop-back is none. Each
/// has its first IPv4 address, or 0.0.0.0, and no link. Nothing where the kernel does not tell.
[[nodiscard]] std::optional<std::vector<AdapterInfoRecord>> KernelAdapters();

/// Links each record to the one behind it, in a block that starts at an address.
void MakeChain(std::vector<AdapterInfoRecord>& records, Address32 start);

}  // namespace quorvane
