#include "platform/iphlpapi.h"

#include <cstring>

#include "platform/posix/adapters.h"
#include "platform/posix/system_errors.h"

namespace quorvane {
namespace {

namespace error = system_error;

// A pointer does not fit into the records' links, so every block starts at this one.
constexpr Address32 kBlockStart{0x10000};

class PosixIphlpapi final : public Iphlpapi {
 public:
  std::int32_t GetAdaptersInfo(void* block, std::int32_t* size) override {
    if (size == nullptr) return error::kInvalidParameter;
    const auto adapters = KernelAdapters();
    if (!adapters) return error::kGeneralFailure;
    const auto chain = MakeChain(*adapters, kBlockStart);
    const auto needed = static_cast<std::int32_t>(chain.size() * sizeof(AdapterInfoRecord));
    const bool fits = block != nullptr && *size >= needed;
    *size = needed;
    if (needed == 0) return error::kNoData;
    if (!fits) return error::kBufferOverflow;
    std::memcpy(block, chain.data(), static_cast<std::size_t>(needed));
    return error::kSuccess;
  }

  Address32 AddressOf(const void* /*block*/) override { return kBlockStart; }
};

}  // namespace

Iphlpapi& iphlpapi() noexcept {
  static PosixIphlpapi instance;
  return instance;
}

}  // namespace quorvane
