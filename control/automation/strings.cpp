#include "control/automation/strings.h"

#include <new>
#include <string>

namespace quorvane::component {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

Text FromBstr(BSTR string) {
  if (string == nullptr) return {};
  return std::u16string_view(reinterpret_cast<const char16_t*>(string), ::SysStringLen(string));
}

BSTR NewBstr(const Text& text) {
  const std::u16string& characters = text.Characters();
  BSTR string = ::SysAllocStringLen(Wide(text), static_cast<UINT>(characters.size()));
  if (string == nullptr) throw std::bad_alloc();
  return string;
}

const wchar_t* Wide(const Text& text) {
  return reinterpret_cast<const wchar_t*>(text.Characters().c_str());
}

wchar_t* MutableWide(const Text& text) { return const_cast<wchar_t*>(Wide(text)); }

}  // namespace quorvane::component
