#include "platform/iphlpapi.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <linux/if_packet.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>

#include "platform/posix/adapters.h"
#include "platform/posix/system_errors.h"

namespace quorvane {
namespace {

namespace error = system_error;
// A pointer does not fit into the records' links, so every block starts at this one.
constexpr Address32 kBlockStart{0x10000};

// By the numbers of the record's field: Ethernet, point to point, other.
std::uint32_t TypeOf(unsigned kernel_type) {
  if (kernel_type == ARPHRD_ETHER) return 6;
  return kernel_type == ARPHRD_PPP ? 23 : 1;
}

template <std::size_t Size>
void CopyText(std::array<char, Size>& place, std::string_view text) {
  std::copy_n(text.begin(), std::min(text.size(), Size - 1), place.begin());
}

// No address counts as 0.0.0.0.
void CopyIp(std::array<char, INET_ADDRSTRLEN>& place, const sockaddr* address) {
  const auto* const known = reinterpret_cast<const sockaddr_in*>(address);
  const in_addr ip = known != nullptr ? known->sin_addr : in_addr{};
  ::inet_ntop(AF_INET, &ip, place.data(), INET_ADDRSTRLEN);
}

bool IsOf(const ifaddrs& entry, int family) {
  return entry.ifa_addr != nullptr && entry.ifa_addr->sa_family == family;
}

// Of a link, with its first address among the entries.
AdapterInfoRecord RecordOf(const ifaddrs& entry, const ifaddrs* entries) {
  const auto& link = *reinterpret_cast<const sockaddr_ll*>(entry.ifa_addr);
  AdapterInfoRecord record{};
  record.combo_index = record.index = static_cast<std::uint32_t>(link.sll_ifindex);
  record.type = TypeOf(link.sll_hatype);
  CopyText(record.name, entry.ifa_name);
  CopyText(record.description, entry.ifa_name);
  static_assert(sizeof link.sll_addr == sizeof record.address);
  record.address_length = std::min<std::uint32_t>(link.sll_halen, sizeof record.address);
  std::copy_n(link.sll_addr, record.address_length, record.address.begin());
  const std::string_view name = entry.ifa_name;
  const ifaddrs* ip = entries;
  while (ip != nullptr && (!IsOf(*ip, AF_INET) || ip->ifa_name != name)) ip = ip->ifa_next;
  CopyIp(record.ip_addresses.address, ip != nullptr ? ip->ifa_addr : nullptr);
  CopyIp(record.ip_addresses.mask, ip != nullptr ? ip->ifa_netmask : nullptr);
  return record;
}

class PosixIphlpapi final : public Iphlpapi {
 public:
  std::int32_t GetAdaptersInfo(void* block, std::int32_t* size) override {
    if (size == nullptr) return error::kInvalidParameter;
    auto adapters = KernelAdapters();
    if (!adapters) return error::kGeneralFailure;
    MakeChain(*adapters, kBlockStart);
    const auto needed = static_cast<std::int32_t>(adapters->size() * sizeof(AdapterInfoRecord));
    const bool fits = block != nullptr && *size >= needed;
    *size = needed;
    if (needed == 0) return error::kNoData;
    if (!fits) return error::kBufferOverflow;
    std::memcpy(block, adapters->data(), static_cast<std::size_t>(needed));
    return error::kSuccess;
  }

  Address32 AddressOf(const void* /*block*/) override { return kBlockStart; }
};

}  // namespace

std::optional<std::vector<AdapterInfoRecord>> KernelAdapters() {
  ifaddrs* first = nullptr;
  if (::getifaddrs(&first) != 0) return std::nullopt;
  const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> owner(first, &::freeifaddrs);
  std::vector<AdapterInfoRecord> adapters;
  for (const ifaddrs* entry = first; entry != nullptr; entry = entry->ifa_next) {
    const bool loops_back = (entry->ifa_flags & IFF_LOOPBACK) != 0;
    if (IsOf(*entry, AF_PACKET) && !loops_back) adapters.push_back(RecordOf(*entry, first));
  }
  return adapters;
}

void MakeChain(std::vector<AdapterInfoRecord>& records, Address32 start) {
  auto next = static_cast<std::uint32_t>(start);
  for (AdapterInfoRecord& record : records) record.next = next += sizeof record;
  if (!records.empty()) records.back().next = 0;
}

Iphlpapi& iphlpapi() noexcept {
  static PosixIphlpapi instance;
  return instance;
}

}  // namespace quorvane
