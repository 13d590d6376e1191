#pragma once

#include <cstring>

#include "platform/kernel32.h"

namespace quorvane::testing {

/// Copies memory for real and does nothing else: every other call fails. A fake derives from it and
/// overrides the calls that it is about.
class FakeKernel32Base : public Kernel32 {
 public:
  std::int32_t GetVersionExA(OsVersionInformation* /*information*/) override { return 0; }
  std::int32_t GetSystemDirectoryA(char* /*buffer*/, std::int32_t /*size*/) override { return 0; }
  std::int32_t GetProfileStringA(const char* /*section*/, const char* /*key*/,
                                 const char* /*default_text*/, char* /*buffer*/,
                                 std::int32_t /*size*/) override {
    return 0;
  }
  std::int32_t WriteProfileStringA(const char* /*section*/, const char* /*key*/,
                                   const char* /*value*/) override {
    return 0;
  }
  std::int32_t GetPrivateProfileStringA(const char* /*section*/, const char* /*key*/,
                                        const char* /*default_text*/, char* /*buffer*/,
                                        std::int32_t /*size*/, const char* /*file*/) override {
    return 0;
  }
  std::int32_t WritePrivateProfileStringA(const char* /*section*/, const char* /*key*/,
                                          const char* /*value*/, const char* /*file*/) override {
    return 0;
  }
  std::int32_t lstrlenA(Address32 /*text*/) override { return 0; }
  Address32 LocalFree(Address32 memory) override { return memory; }
  void RtlMoveMemory(void* destination, const void* source, std::uint32_t length) override {
    if (length > 0) std::memmove(destination, source, length);
  }
  void RtlMoveMemory(void* /*destination*/, Address32 /*source*/,
                     std::uint32_t /*length*/) override {}
};

}  // namespace quorvane::testing
