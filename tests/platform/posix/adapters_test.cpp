// Proves that the stand-in's adapters are the kernel's, in records of the 32-bit layout.

#include "platform/posix/adapters.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>

namespace quorvane {
namespace {

std::string Colons(const std::vector<std::uint8_t>& address) {
  std::string text;
  for (const std::uint8_t byte : address) {
    char digits[4];
    std::snprintf(digits, sizeof digits, "%02x", unsigned{byte});
    text += (text.empty() ? "" : ":") + std::string(digits);
  }
  return text;
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
  for (const Adapter& adapter : *adapters) {
    found.insert(adapter.name + " " + Colons(adapter.hardware_address));
    EXPECT_NE(adapter.index, 0U);
  }
  EXPECT_EQ(found, expected);
}

TEST(MakeChain, LinksOneRecordBehindTheOther) {
  Adapter first;
  first.index = 2;
  first.name = "eth0";
  first.type = 6;
  first.hardware_address = {1, 2, 3, 4, 5, 6};
  first.ip_address = "10.1.2.3";
  first.ip_mask = "255.0.0.0";
  Adapter second;
  second.name = std::string(300, 'n');
  second.hardware_address = std::vector<std::uint8_t>(20, 0xAB);
  const auto chain = MakeChain({first, second}, Address32{0x1000});
  ASSERT_EQ(chain.size(), 2U);
  EXPECT_EQ(chain[0].next, 0x1000U + 640);
  EXPECT_EQ(chain[1].next, 0U);
  EXPECT_STREQ(chain[0].name.data(), "eth0");
  EXPECT_EQ(chain[0].address_length, 6U);
  EXPECT_EQ(chain[0].address[5], 6);
  EXPECT_EQ(chain[0].address[6], 0);
  EXPECT_STREQ(chain[0].ip_addresses.address.data(), "10.1.2.3");
  EXPECT_STREQ(chain[0].ip_addresses.mask.data(), "255.0.0.0");
  EXPECT_EQ(std::strlen(chain[1].name.data()), 259U);
  EXPECT_EQ(chain[1].address_length, 8U) << "no more than the record has room for";
  EXPECT_STREQ(chain[1].ip_addresses.address.data(), "0.0.0.0");
  EXPECT_TRUE(MakeChain({}, Address32{0x1000}).empty());
}

}  // namespace
}  // namespace quorvane
