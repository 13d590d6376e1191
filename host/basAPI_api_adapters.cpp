#include <array>
#include <cstddef>
#include <string>

#include "host/basAPI_api.h"
#include "runtime/ignored_result.h"
#include "runtime/runtime_error.h"
#include "runtime/text_parts.h"

namespace quorvane::basAPI_api {
namespace {

// The platform's published record IP_ADAPTER_INFO, as far as it is read here.
struct AdapterRecord {
  std::uint32_t next;
  std::array<std::uint8_t, 400> unread_1;
  std::array<std::uint8_t, 8> address;
  std::array<std::uint8_t, 228> unread_2;
};
static_assert(sizeof(AdapterRecord) == 640);
static_assert(offsetof(AdapterRecord, address) == 404);

// A chain of records in one block of bytes. Whatever its links say, nothing outside the block is
// read, and no walk is longer than the block has room for records.
class AdapterChain {
 public:
  AdapterChain(const ByteArray& block, Address32 start, Kernel32& kernel)
      : bytes_(block.Elements()), start_(start), kernel_(kernel) {}

  [[nodiscard]] AdapterRecord RecordAt(Address32 address) {
    AdapterRecord record{};
    const std::uint32_t offset = Distance(start_, address);
    // The count comes first: it also refuses a block without room for a single record.
    if (++records_read_ > bytes_.size() / sizeof record || offset > bytes_.size() - sizeof record) {
      Raise(ErrorNumber::kSubscriptOutOfRange);
    }
    kernel_.RtlMoveMemory(&record, &bytes_[offset], sizeof record);
    return record;
  }

 private:
  std::span<const std::uint8_t> bytes_;
  Address32 start_;
  Kernel32& kernel_;
  std::size_t records_read_ = 0;
};

Text HexadecimalForm(std::uint8_t byte) {
  constexpr std::u16string_view kDigits = u"0123456789ABCDEF";
  std::u16string digits;
  if (byte > 0xF) digits += kDigits[byte >> 4];
  digits += kDigits[byte & 0xF];
  return Text(std::move(digits));
}

Text AddressText(const AdapterRecord& record) {
  constexpr std::size_t kBytesShown = 6;
  Text text(u"");
  for (std::size_t index = 0; index < kBytesShown; ++index) {
    const Text digits = HexadecimalForm(record.address[index]);
    text = text + (digits.Length() == 1 ? u"0" + digits : digits);
  }
  return TrimSpaces(text);
}

// Kept: all items but the first go in front, so the platform's last adapter comes first; a host
// that takes item 1 gets that one. Pinned by GetAdapterAddresses.ReversesThePlatformsOrder.
void AddItem(TextList& list, Text item) {
  if (!list.empty()) {
    list.insert(list.begin(), std::move(item));
  } else {
    list.push_back(std::move(item));
  }
}

TextList ListAddresses(Iphlpapi& iphlp, Kernel32& kernel) {
  TextList list;
  std::int32_t size = 0;
  // The first call is to refuse; what counts is the size.
  IgnoreResult(iphlp.GetAdaptersInfo(nullptr, &size));
  if (size <= 0) return list;
  ByteArray block(0, size - 1);
  if (iphlp.GetAdaptersInfo(&block.At(0), &size) != 0) return list;
  Address32 address = iphlp.AddressOf(&block.At(0));
  AdapterChain chain(block, address, kernel);
  while (address != kNoAddress) {
    const AdapterRecord record = chain.RecordAt(address);
    AddItem(list, AddressText(record));
    address = Address32{record.next};
  }
  return list;
}

}  // namespace

std::optional<TextList> GetAdapterAddresses(Iphlpapi& iphlp, Kernel32& kernel) {
  try {
    return ListAddresses(iphlp, kernel);
  } catch (...) {
    return std::nullopt;
  }
}

}  // namespace quorvane::basAPI_api
