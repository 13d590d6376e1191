// Proves that the stand-in's adapters are the kernel's, in records of the 32-bit layout.

#include "platform/posix/adapters.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "platform/iphlpapi.h"
#include "platform/posix/system_errors.h"

namespace quorvane {
namespace {

std::string Colons(std::span<const std::uint8_t> address) {
  std::string text;
  for (const std::uint8_t byte : address) {
    char digits[4];
    std::snprintf(digits, sizeof digits, "%02x", unsigned{byte});
    text += (text.empty() ? "" : ":") + std::string(digits);
  }
  return text;
}

// What the kernel answers when it is asked for one adapter.
std::string IpOf(const char* name, unsigned long request) {
  ifreq answer{};
  std::strncpy(answer.ifr_name, name, IFNAMSIZ - 1);
  const int asked = ::socket(AF_INET, SOCK_DGRAM, 0);
  const bool has_one = ::ioctl(asked, request, &answer) == 0;
  ::close(asked);
  sockaddr_in ip{};
  if (has_one) std::memcpy(&ip, &answer.ifr_addr, sizeof ip);
  char text[INET_ADDRSTRLEN];
  return ::inet_ntop(AF_INET, &ip.sin_addr, text, sizeof text);
}

TEST(KernelAdapters, AreThoseUnderSysClassNetButTheLoopBack) {
  std::set<std::string> expected;
  for (const auto& entry : std::filesystem::directory_iterator("/sys/class/net")) {
    unsigned flags = 0;
    std::ifstream(entry.path() / "flags") >> std::hex >> flags;
    std::string address;
    std::ifstream(entry.path() / "address") >> address;
    const bool is_adapter = std::filesystem::exists(entry.path() / "flags") && (flags & 8U) == 0;
    if (is_adapter) expected.insert(entry.path().filename().native() + " " + address);
  }
  std::set<std::string> found;
  const auto adapters = KernelAdapters();
  ASSERT_TRUE(adapters.has_value());
  for (const AdapterInfoRecord& adapter : *adapters) {
    const auto address = std::span(adapter.address).first(adapter.address_length);
    found.insert(std::string(adapter.name.data()) + " " + Colons(address));
    // By the kernel's numbers: 1 for Ethernet, 512 for a link from point to point.
    int kernel_type = 0;
    std::ifstream(std::filesystem::path("/sys/class/net") / adapter.name.data() / "type") >>
        kernel_type;
    EXPECT_EQ(adapter.type, kernel_type == 1 ? 6U : kernel_type == 512 ? 23U : 1U);
    EXPECT_NE(adapter.index, 0U);
    EXPECT_EQ(adapter.next, 0U);
    EXPECT_EQ(adapter.ip_addresses.address.data(), IpOf(adapter.name.data(), SIOCGIFADDR));
    EXPECT_EQ(adapter.ip_addresses.mask.data(), IpOf(adapter.name.data(), SIOCGIFNETMASK));
  }
  EXPECT_EQ(found, expected);
}

TEST(KernelAdapters, FillABlockThatHasRoomForThem) {
  std::vector<AdapterInfoRecord> records(KernelAdapters()->size());
  if (records.empty()) return;  // SystemFault.NoAdapterIsAnAnswerOfItsOwn
  const auto needed = static_cast<std::int32_t>(records.size() * sizeof records[0]);
  std::int32_t size = 0;
  EXPECT_EQ(iphlpapi().GetAdaptersInfo(nullptr, nullptr), system_error::kInvalidParameter);
  EXPECT_EQ(iphlpapi().GetAdaptersInfo(records.data(), &size), system_error::kBufferOverflow);
  EXPECT_EQ(size, needed);
  EXPECT_EQ(iphlpapi().GetAdaptersInfo(records.data(), &size), system_error::kSuccess);
  EXPECT_EQ(size, needed);
  auto next = static_cast<std::uint32_t>(iphlpapi().AddressOf(records.data()));
  for (const AdapterInfoRecord& record : records) {
    next += sizeof record;
    EXPECT_EQ(record.next, &record == &records.back() ? 0 : next);
    EXPECT_NE(record.name[0], '\0');
  }
}

TEST(MakeChain, LinksOneRecordBehindTheOther) {
  std::vector<AdapterInfoRecord> chain(3);
  MakeChain(chain, Address32{0x1000});
  EXPECT_EQ(chain[0].next, 0x1000U + 640);
  EXPECT_EQ(chain[1].next, 0x1000U + 2 * 640);
  EXPECT_EQ(chain[2].next, 0U);
  chain.clear();
  MakeChain(chain, Address32{0x1000});
}

}  // namespace
}  // namespace quorvane
