#include "host/basAPI_api.h"
#include "runtime/ansi_text.h"
#include "runtime/ignored_result.h"
#include "runtime/integers.h"
#include "runtime/text_parts.h"

namespace quorvane::basAPI_api {
namespace {

constexpr std::int16_t kDirectorySize = 255;

// Kept: every position of the buffer is visited and a zero is skipped, not taken as the end, so
// whatever stands behind one joins the result. The path comes out whole because the bytes behind it
// are still the buffer's spaces. Hosts compare this text with the one they saved.
// Test: GetSystemDirectoryPath.KeepsCharactersBehindNul
Text WithoutZeros(Text buffer) {
  std::u16string characters = FixedLength(std::move(buffer), kDirectorySize).Release();
  std::erase(characters, u'\0');
  return Text(std::move(characters));
}

Text SystemDirectory(Kernel32& os, const CodePage& code_page) {
  Text buffer(std::size_t{kDirectorySize}, u' ');
  const std::int16_t size = NarrowTo16(buffer.Length());
  // A call that fails leaves the spaces, and those make the empty text.
  IgnoreResult(CallWithAnsi(
      code_page, [&](char* copy) { return os.GetSystemDirectoryA(copy, size); }, buffer));
  return TrimSpaces(WithoutZeros(std::move(buffer)));
}

}  // namespace

Text GetOSPlatformName(Kernel32& os) {
  constexpr std::uint32_t kWin32s = 0;
  constexpr std::uint32_t kWindows95 = 1;
  OsVersionInformation information{};
  information.dwOSVersionInfoSize = sizeof information;
  // Kept: a failing call is not noticed, so the id stays 0 and the name is "Win32s".
  // Hosts take that word for "not known". Test: GetOSPlatformName.IsWin32sWhenTheCallFails
  IgnoreResult(os.GetVersionExA(&information));
  if (information.dwPlatformId == kWin32s) return u"Win32s";
  if (information.dwPlatformId == kWindows95) return u"Windows 95";
  // Kept: not a test for 2, so an id that nobody knows yet is one of this family. Hosts choose
  // their storage by it. Test: GetOSPlatformName.CountsUnknownIdsAsWindowsNT
  return u"Windows NT";
}

Text GetSystemDirectoryPath(Kernel32& os, const CodePage& code_page) {
  try {
    return SystemDirectory(os, code_page);
  } catch (...) {
    return Text(u"");
  }
}

}  // namespace quorvane::basAPI_api
