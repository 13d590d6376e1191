#include "platform/iphlpapi.h"

#include "platform/windows/delay_load.h"
#include "platform/windows/os_headers.h"
#include "platform/windows/pointers.h"

namespace quorvane {
namespace {

class WindowsIphlpapi final : public Iphlpapi {
 public:
  std::int32_t GetAdaptersInfo(void* block, std::int32_t* size) override {
    return static_cast<std::int32_t>(get_adapters_info_()(block, reinterpret_cast<ULONG*>(size)));
  }
  Address32 AddressOf(const void* block) override { return AddressOfPointer(block); }

 private:
  DelayLoadLibrary library_{L"iphlpapi.dll"};
  DelayLoadCall<DWORD(WINAPI*)(void*, ULONG*)> get_adapters_info_{library_, "GetAdaptersInfo"};
};

}  // namespace

Iphlpapi& iphlpapi() noexcept {
  static WindowsIphlpapi instance;
  return instance;
}

}  // namespace quorvane
