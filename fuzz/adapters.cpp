// The block of adapter records that the system fills: any size, any links.
//
// Oracle: the chain walked by places in the block, with the rule that it may be no longer than the
// block has records.

#include <cstdio>
#include <cstring>
#include <optional>

#include "fuzz/target.h"
#include "host/basAPI_api.h"
#include "tests/support/fake_kernel32_base.h"

namespace quorvane::fuzz::adapters {

constexpr std::size_t kRecord = 640;

class ScriptedAdapters final : public Iphlpapi {
 public:
  ScriptedAdapters(std::string block, Address32 start, std::int32_t size, std::int32_t result)
      : block_(std::move(block)), start_(start), size_(size), result_(result) {}

  std::int32_t GetAdaptersInfo(void* block, std::int32_t* size) override {
    if (block != nullptr) std::memcpy(block, block_.data(), block_.size());
    *size = size_;
    return block == nullptr ? 111 : result_;
  }
  Address32 AddressOf(const void* /*block*/) override { return start_; }

 private:
  std::string block_;
  Address32 start_;
  std::int32_t size_;
  std::int32_t result_;
};

std::uint32_t LinkAt(const std::string& block, std::size_t place) {
  std::uint32_t link = 0;
  for (int i = 3; i >= 0; --i)
    link = link * 256 + static_cast<unsigned char>(block[place + static_cast<std::size_t>(i)]);
  return link;
}

// Nothing for a chain that leaves the block or does not end.
std::optional<std::vector<Text>> Walk(const std::string& block, std::uint32_t start) {
  std::vector<Text> found;
  std::uint32_t link = start;
  for (std::size_t left = block.size() / kRecord; link != 0; --left) {
    const std::uint64_t place = link - start;
    if (left == 0 || place + kRecord > block.size()) return std::nullopt;
    char text[13];
    for (std::size_t i = 0; i < 6; ++i)
      std::snprintf(text + 2 * i, 3, "%02X",
                    static_cast<unsigned char>(block[static_cast<std::size_t>(place) + 404 + i]));
    found.insert(found.begin(), Text(std::u16string(text, text + 12)));
    link = LinkAt(block, static_cast<std::size_t>(place));
  }
  return found;
}

void Run(Input input) {
  const std::size_t count = input.Byte(5);
  const std::int32_t result = input.Byte(15) == 15 ? 1 : 0;
  const std::uint8_t other_start = input.Byte(7);
  const std::uint32_t start =
      other_start != 7 ? 0x10000U : static_cast<std::uint32_t>(input.Number32());
  std::string block(count * kRecord + input.Byte(7) * std::size_t{100}, '\0');
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint8_t way = input.Byte();
    std::uint32_t link = way == 255 ? static_cast<std::uint32_t>(input.Number32()) : 0;
    if (way > 0 && way < 64) link = start + static_cast<std::uint32_t>(way % (count + 1) * kRecord);
    if (way >= 64 && way < 255) link = start + way * 17U;
    for (std::size_t byte = 0; byte < 4; ++byte)
      block[i * kRecord + byte] = static_cast<char>(link >> (8 * byte));
    const std::string address = input.Bytes(6);
    block.replace(i * kRecord + 404, address.size(), address);
  }
  const bool is_empty = block.empty();
  const auto size = static_cast<std::int32_t>(block.size());
  ScriptedAdapters system(block, Address32{start}, is_empty ? -static_cast<int>(count) : size,
                          result);
  testing::FakeKernel32Base kernel;
  const auto expected = is_empty || result != 0 ? std::vector<Text>{} : Walk(block, start);
  Require(basAPI_api::GetAdapterAddresses(system, kernel) == expected, "GetAdapterAddresses()");
}

const Registered kTarget("adapters", Run);

}  // namespace quorvane::fuzz::adapters
