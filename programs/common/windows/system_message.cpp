#include "programs/common/windows/system_message.h"

#include <windows.h>

#include <charconv>
#include <iterator>

#include "runtime/utf8.h"

namespace quorvane::programs {
namespace {

std::string CodeOnly(unsigned long code) {
  char digits[16];
  const auto [end, error] = std::to_chars(std::begin(digits), std::end(digits), code, 16);
  return "code 0x" + std::string(digits, end);
}

}  // namespace

std::string SystemMessage(unsigned long code) {
  std::u16string message(512, u'\0');
  const DWORD length = ::FormatMessageW(
      FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0,
      reinterpret_cast<wchar_t*>(message.data()), static_cast<DWORD>(message.size()), nullptr);
  message.resize(length);
  while (!message.empty() && (message.back() <= u' ' || message.back() == u'.')) message.pop_back();
  return message.empty() ? CodeOnly(code) : ToUtf8(Text(message));
}

}  // namespace quorvane::programs
