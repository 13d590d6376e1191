#include "platform/kernel32.h"

#include <cstring>

#include "platform/windows/os_headers.h"
#include "platform/windows/pointers.h"

namespace quorvane {
namespace {

static_assert(sizeof(OsVersionInformation) == sizeof(::OSVERSIONINFOA));

class WindowsKernel32 final : public Kernel32 {
 public:
  std::int32_t GetVersionExA(OsVersionInformation* information) override {
    return ::GetVersionExA(reinterpret_cast<::OSVERSIONINFOA*>(information));
  }
  std::int32_t GetSystemDirectoryA(char* buffer, std::int32_t size) override {
    return static_cast<std::int32_t>(::GetSystemDirectoryA(buffer, static_cast<UINT>(size)));
  }

  std::int32_t GetProfileStringA(const char* section, const char* key, const char* default_text,
                                 char* buffer, std::int32_t size) override {
    return static_cast<std::int32_t>(
        ::GetProfileStringA(section, key, default_text, buffer, static_cast<DWORD>(size)));
  }
  std::int32_t WriteProfileStringA(const char* section, const char* key,
                                   const char* value) override {
    return ::WriteProfileStringA(section, key, value);
  }
  std::int32_t GetPrivateProfileStringA(const char* section, const char* key,
                                        const char* default_text, char* buffer, std::int32_t size,
                                        const char* file) override {
    return static_cast<std::int32_t>(::GetPrivateProfileStringA(section, key, default_text, buffer,
                                                                static_cast<DWORD>(size), file));
  }
  std::int32_t WritePrivateProfileStringA(const char* section, const char* key, const char* value,
                                          const char* file) override {
    return ::WritePrivateProfileStringA(section, key, value, file);
  }

  std::int32_t lstrlenA(Address32 text) override { return ::lstrlenA(PointerTo<char>(text)); }
  Address32 LocalFree(Address32 memory) override {
    return AddressOfPointer(::LocalFree(PointerTo(memory)));
  }

  // The system's own RtlMoveMemory is the C library's memmove under another name.
  void RtlMoveMemory(void* destination, const void* source, std::uint32_t length) override {
    if (length > 0) std::memmove(destination, source, length);
  }
  void RtlMoveMemory(void* destination, Address32 source, std::uint32_t length) override {
    if (length > 0) std::memmove(destination, PointerTo(source), length);
  }
};

}  // namespace

Kernel32& kernel32() noexcept {
  static WindowsKernel32 instance;
  return instance;
}

}  // namespace quorvane
