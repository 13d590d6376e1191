#include "platform/advapi32.h"

#include "platform/thread_record.h"
#include "platform/windows/delay_load.h"
#include "platform/windows/os_headers.h"
#include "platform/windows/pointers.h"

namespace quorvane {
namespace {

// The seam's integers are those of the system's calls: 32 bits, whatever their sign.
static_assert(sizeof(std::int32_t) == sizeof(DWORD));

HKEY KeyOf(RegistryHandle handle) {
  return PointerTo<HKEY__>(Address32{static_cast<std::uint32_t>(handle)});
}
RegistryHandle HandleOf(HKEY key) {
  return static_cast<RegistryHandle>(static_cast<std::uint32_t>(AddressOfPointer(key)));
}
DWORD* Unsigned(std::int32_t* value) { return reinterpret_cast<DWORD*>(value); }

struct CapturedError final : ThreadRecord {
  DWORD code = 0;
};

// Calls with a last-error code of 0 beforehand, so that a code which an earlier call left behind is
// never taken for this one's, and captures the code right afterwards.
template <class Call>
std::int32_t Capture(Call call) {
  auto& captured = threadRecord<CapturedError>();
  ::SetLastError(ERROR_SUCCESS);
  const BOOL result = call();
  captured.code = ::GetLastError();
  return result;
}

class WindowsAdvapi32 final : public Advapi32 {
 public:
  std::int32_t RegOpenKeyExA(RegistryHandle hive, const char* path, std::int32_t options,
                             std::int32_t access, RegistryHandle* key) override {
    HKEY opened = nullptr;
    const LONG result = ::RegOpenKeyExA(KeyOf(hive), path, static_cast<DWORD>(options),
                                        static_cast<REGSAM>(access), &opened);
    *key = HandleOf(opened);
    return result;
  }
  std::int32_t RegCreateKeyExA(RegistryHandle hive, const char* path, std::int32_t reserved,
                               const char* class_name, std::int32_t options, std::int32_t access,
                               const void* security, RegistryHandle* key,
                               std::int32_t* disposition) override {
    HKEY opened = nullptr;
    const LONG result = ::RegCreateKeyExA(
        KeyOf(hive), path, static_cast<DWORD>(reserved), const_cast<char*>(class_name),
        static_cast<DWORD>(options), static_cast<REGSAM>(access),
        static_cast<SECURITY_ATTRIBUTES*>(const_cast<void*>(security)), &opened,
        Unsigned(disposition));
    *key = HandleOf(opened);
    return result;
  }
  std::int32_t RegQueryValueExA(RegistryHandle key, const char* name, std::int32_t* reserved,
                                std::int32_t* type, void* data, std::int32_t* size) override {
    return ::RegQueryValueExA(KeyOf(key), name, Unsigned(reserved), Unsigned(type),
                              static_cast<BYTE*>(data), Unsigned(size));
  }
  std::int32_t RegSetValueExA(RegistryHandle key, const char* name, std::int32_t reserved,
                              std::int32_t type, const void* data, std::int32_t size) override {
    return ::RegSetValueExA(KeyOf(key), name, static_cast<DWORD>(reserved),
                            static_cast<DWORD>(type), static_cast<const BYTE*>(data),
                            static_cast<DWORD>(size));
  }
  std::int32_t RegCloseKey(RegistryHandle key) override { return ::RegCloseKey(KeyOf(key)); }

  std::int32_t GetUserNameA(char* buffer, std::int32_t* size) override {
    return Capture([&] { return ::GetUserNameA(buffer, Unsigned(size)); });
  }
  std::int32_t LookupAccountNameA(const char* system, const char* account, void* sid,
                                  std::int32_t* sid_size, char* domain, std::int32_t* domain_size,
                                  std::int32_t* account_type) override {
    return Capture([&] {
      return ::LookupAccountNameA(system, account, sid, Unsigned(sid_size), domain,
                                  Unsigned(domain_size),
                                  reinterpret_cast<SID_NAME_USE*>(account_type));
    });
  }
  std::int32_t ConvertSidToStringSidA(const void* sid, Address32* text) override {
    char* converted = nullptr;
    const auto function = convert_sid_to_string_sid_();
    const std::int32_t result =
        Capture([&] { return function(const_cast<void*>(sid), &converted); });
    *text = AddressOfPointer(converted);
    return result;
  }
  std::int32_t LastError() override {
    return static_cast<std::int32_t>(threadRecord<CapturedError>().code);
  }

 private:
  // Windows NT 4 has the library, but not this call.
  DelayLoadLibrary library_{L"advapi32.dll"};
  DelayLoadCall<BOOL(WINAPI*)(PSID, LPSTR*)> convert_sid_to_string_sid_{library_,
                                                                        "ConvertSidToStringSidA"};
};

}  // namespace

Advapi32& advapi32() noexcept {
  static WindowsAdvapi32 instance;
  return instance;
}

}  // namespace quorvane
