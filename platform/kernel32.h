#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/address32.h"

namespace quorvane {

/// The platform's published record OSVERSIONINFOA, 148 bytes.
struct OsVersionInformation {
  std::uint32_t dwOSVersionInfoSize;  ///< of this record, in bytes; set by the caller
  std::uint32_t dwMajorVersion;       ///< of the system
  std::uint32_t dwMinorVersion;       ///< of the system
  std::uint32_t dwBuildNumber;        ///< of the system
  std::uint32_t dwPlatformId;         ///< family: 0, 1 or 2 on Windows
  /// A note on the release, with its zero.
  char szCSDVersion[128];  // NOLINT(*-avoid-c-arrays): the layout is published
};
static_assert(sizeof(OsVersionInformation) == 148);
static_assert(offsetof(OsVersionInformation, dwPlatformId) == 16);

/// Calls of the system's base library, under their own names; results are handed back raw.
///
/// Texts are 8-bit, in the system's code page, and end with a zero. Sizes count bytes.
class Kernel32 {
 public:
  virtual ~Kernel32() = default;

  /// Fills the record, whose size field holds 148; non-zero for success. A failure writes nothing.
  [[nodiscard]] virtual std::int32_t GetVersionExA(OsVersionInformation* information) = 0;

  /// Writes the system directory and its zero to the start of the buffer if they fit, and leaves
  /// the bytes behind as they were; else writes nothing. Gives the length without the zero, or the
  /// size needed where it did not fit, or 0 for another failure.
  [[nodiscard]] virtual std::int32_t GetSystemDirectoryA(char* buffer, std::int32_t size) = 0;

  /// Copies the text stored under section and key of the system's own profile, or the default text,
  /// into the buffer, cut to size - 1 bytes, with a zero behind it. Gives the count of bytes
  /// without that zero. A null key lists the section's keys, a null section all sections; each name
  /// then has a zero of its own and the count takes in all of those but the list's closing one.
  [[nodiscard]] virtual std::int32_t GetProfileStringA(const char* section, const char* key,
                                                       const char* default_text, char* buffer,
                                                       std::int32_t size) = 0;
  /// Stores the value in the system's own profile; non-zero for success. A null value takes the key
  /// away, a null key the whole section.
  [[nodiscard]] virtual std::int32_t WriteProfileStringA(const char* section, const char* key,
                                                         const char* value) = 0;
  /// GetProfileStringA() for a named file. The platform decides where a name without a directory
  /// lies.
  [[nodiscard]] virtual std::int32_t GetPrivateProfileStringA(const char* section, const char* key,
                                                              const char* default_text,
                                                              char* buffer, std::int32_t size,
                                                              const char* file) = 0;
  /// WriteProfileStringA() for a named file.
  [[nodiscard]] virtual std::int32_t WritePrivateProfileStringA(const char* section,
                                                                const char* key, const char* value,
                                                                const char* file) = 0;

  /// The length in bytes, without the zero, of a text that a call has handed out by its address; 0
  /// for no address.
  [[nodiscard]] virtual std::int32_t lstrlenA(Address32 text) = 0;
  /// Gives back memory that a call has handed out by its address; no address for success, else the
  /// address itself.
  [[nodiscard]] virtual Address32 LocalFree(Address32 memory) = 0;

  /// Copies `length` bytes; the blocks may overlap. Neither pointer may be null unless the length
  /// is 0.
  virtual void RtlMoveMemory(void* destination, const void* source, std::uint32_t length) = 0;
  /// The same, from memory that a call has handed out by its address.
  virtual void RtlMoveMemory(void* destination, Address32 source, std::uint32_t length) = 0;
};

/// The platform's own, on Linux its stand-in. It lives as long as the program.
[[nodiscard]] Kernel32& kernel32() noexcept;

}  // namespace quorvane
