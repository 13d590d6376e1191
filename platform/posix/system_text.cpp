#include "platform/posix/system_text.h"

#include "platform/system_code_page.h"
#include "runtime/utf8.h"

namespace quorvane {

std::u16string FromSystemPage(std::string_view bytes) { return systemCodePage().FromBytes(bytes); }

std::string ToSystemPage(std::u16string_view characters) {
  return systemCodePage().ToBytes(characters);
}

std::string SystemPageToUtf8(std::string_view bytes) { return ToUtf8(Text(FromSystemPage(bytes))); }

std::string Utf8ToSystemPage(std::string_view utf8) {
  return ToSystemPage(FromUtf8(utf8).Characters());
}

}  // namespace quorvane
