#include "benchmarks/listing_files.h"
#include "platform/windows/os_headers.h"

namespace quorvane::benchmarks {

Text ListByDirectory(const Text& name) {
  WIN32_FIND_DATAW entry{};
  const HANDLE listing =
      ::FindFirstFileW(reinterpret_cast<const wchar_t*>(name.Characters().c_str()), &entry);
  if (listing == INVALID_HANDLE_VALUE) return u"";
  ::FindClose(listing);
  return Text(reinterpret_cast<const char16_t*>(entry.cFileName));
}

}  // namespace quorvane::benchmarks
