#include "platform/posix/adapters.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <linux/if_packet.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <memory>

namespace quorvane {
namespace {

std::uint32_t TypeOf(unsigned kernel_type) {
  constexpr std::uint32_t kOther = 1;
  constexpr std::uint32_t kEthernet = 6;
  constexpr std::uint32_t kPointToPoint = 23;
  if (kernel_type == ARPHRD_ETHER) return kEthernet;
  return kernel_type == ARPHRD_PPP ? kPointToPoint : kOther;
}

std::string IpText(const sockaddr* address) {
  if (address == nullptr) return {};
  std::array<char, INET_ADDRSTRLEN> text{};
  const in_addr& ip = reinterpret_cast<const sockaddr_in*>(address)->sin_addr;
  return ::inet_ntop(AF_INET, &ip, text.data(), text.size()) != nullptr ? text.data() : "";
}

Adapter AdapterFrom(const ifaddrs& entry) {
  const auto& link = *reinterpret_cast<const sockaddr_ll*>(entry.ifa_addr);
  const std::size_t length = std::min<std::size_t>(link.sll_halen, sizeof link.sll_addr);
  Adapter adapter;
  adapter.index = static_cast<std::uint32_t>(link.sll_ifindex);
  adapter.name = entry.ifa_name;
  adapter.type = TypeOf(link.sll_hatype);
  adapter.hardware_address.assign(link.sll_addr, link.sll_addr + length);
  return adapter;
}

template <std::size_t Size>
void CopyText(std::array<char, Size>& place, std::string_view text) {
  std::copy_n(text.begin(), std::min(text.size(), Size - 1), place.begin());
}

AdapterInfoRecord RecordOf(const Adapter& adapter) {
  AdapterInfoRecord record{};
  record.combo_index = record.index = adapter.index;
  record.type = adapter.type;
  CopyText(record.name, adapter.name);
  CopyText(record.description, adapter.name);
  const std::size_t length = std::min(adapter.hardware_address.size(), record.address.size());
  record.address_length = static_cast<std::uint32_t>(length);
  std::copy_n(adapter.hardware_address.begin(), length, record.address.begin());
  CopyText(record.ip_addresses.address,
           adapter.ip_address.empty() ? "0.0.0.0" : adapter.ip_address);
  CopyText(record.ip_addresses.mask, adapter.ip_mask.empty() ? "0.0.0.0" : adapter.ip_mask);
  return record;
}

}  // namespace

std::optional<std::vector<Adapter>> KernelAdapters() {
  ifaddrs* first = nullptr;
  if (::getifaddrs(&first) != 0) return std::nullopt;
  const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> owner(first, &::freeifaddrs);
  std::vector<Adapter> adapters;
  for (const ifaddrs* entry = first; entry != nullptr; entry = entry->ifa_next) {
    const bool is_link = entry->ifa_addr != nullptr && entry->ifa_addr->sa_family == AF_PACKET;
    if (is_link && (entry->ifa_flags & IFF_LOOPBACK) == 0) adapters.push_back(AdapterFrom(*entry));
  }
  for (const ifaddrs* entry = first; entry != nullptr; entry = entry->ifa_next) {
    if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_INET) continue;
    const auto adapter = std::ranges::find(adapters, entry->ifa_name, &Adapter::name);
    if (adapter == adapters.end() || !adapter->ip_address.empty()) continue;
    adapter->ip_address = IpText(entry->ifa_addr);
    adapter->ip_mask = IpText(entry->ifa_netmask);
  }
  return adapters;
}

std::vector<AdapterInfoRecord> MakeChain(const std::vector<Adapter>& adapters, Address32 start) {
  std::vector<AdapterInfoRecord> chain;
  chain.reserve(adapters.size());
  auto next = static_cast<std::uint32_t>(start);
  for (const Adapter& adapter : adapters) {
    next += sizeof(AdapterInfoRecord);
    chain.push_back(RecordOf(adapter));
    chain.back().next = next;
  }
  if (!chain.empty()) chain.back().next = 0;
  return chain;
}

}  // namespace quorvane
