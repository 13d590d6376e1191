#include <cstring>
#include <string>
#include <string_view>

#include "host/basAPI_api.h"
#include "runtime/ascii.h"
#include "runtime/fixed_buffer.h"
#include "runtime/ignored_result.h"

namespace quorvane::basAPI_api {
namespace {

constexpr std::int16_t kDirectorySize = 255;

// Kept: every position of the buffer is visited and a zero is skipped, not taken as the end, so
// whatever stands behind one joins the result. The path comes out whole because the bytes behind it
// are still the buffer's spaces. Pinned by GetSystemDirectoryPath.KeepsCharactersBehindNul.
//
// Zeros go wherever they stand and spaces at the ends, so the ends can go first, before anything is
// copied.
template <class Unit>
Text WithoutZerosAndOuterSpaces(std::basic_string_view<Unit> buffer) {
  const auto goes = [](Unit c) { return c == 0 || c == ' '; };
  while (!buffer.empty() && goes(buffer.back())) buffer.remove_suffix(1);
  while (!buffer.empty() && goes(buffer.front())) buffer.remove_prefix(1);
  std::u16string characters(buffer.begin(), buffer.end());
  std::erase(characters, u'\0');
  return Text(std::move(characters));
}

// Most of the buffer is spaces still: they go eight at a time.
std::string_view WithoutSpacesBehind(std::string_view bytes) {
  constexpr std::uint64_t kSpaces = 0x2020202020202020;
  std::uint64_t last = 0;
  for (; bytes.size() >= sizeof last; bytes.remove_suffix(sizeof last)) {
    std::memcpy(&last, bytes.data() + bytes.size() - sizeof last, sizeof last);
    if (last != kSpaces) break;
  }
  return bytes;
}

// What is ASCII as bytes is the same as characters, the spaces behind it, too, so then only what
// stays is made into text.
Text SystemDirectory(Kernel32& kernel, const CodePage& code_page) {
  FixedBuffer<kDirectorySize> buffer(' ');
  // A call that fails leaves the spaces, and those make the empty text.
  IgnoreResult(kernel.GetSystemDirectoryA(buffer.Bytes(), kDirectorySize));
  const std::string_view bytes = WithoutSpacesBehind({buffer.Bytes(), std::size_t{kDirectorySize}});
  if (IsAscii(bytes)) return WithoutZerosAndOuterSpaces(bytes);
  return WithoutZerosAndOuterSpaces(buffer.CopyBack(code_page));
}

}  // namespace

std::u16string_view GetOSPlatformName(Kernel32& kernel) {
  constexpr std::uint32_t kWin32s = 0;
  constexpr std::uint32_t kWindows95 = 1;
  OsVersionInformation information{};
  information.dwOSVersionInfoSize = sizeof information;
  // Kept: a failing call is not noticed, so the id stays 0 and the name is "Win32s", which
  // a caller cannot tell from the system of that name. Pinned by
  // GetOSPlatformName.IsWin32sWhenTheCallFails.
  IgnoreResult(kernel.GetVersionExA(&information));
  if (information.dwPlatformId == kWin32s) return u"Win32s";
  if (information.dwPlatformId == kWindows95) return u"Windows 95";
  // Kept: not a test for 2, so an id that nobody knows yet is one of this family. Pinned by
  // GetOSPlatformName.CountsUnknownIdsAsWindowsNT.
  return u"Windows NT";
}

Text GetSystemDirectoryPath(Kernel32& kernel, const CodePage& code_page) {
  try {
    return SystemDirectory(kernel, code_page);
  } catch (...) {
    return Text(u"");
  }
}

}  // namespace quorvane::basAPI_api
