#include "programs/form_host/windows/watch/describe.h"

#include <array>
#include <cstdio>

#include "control/automation/variant_value.h"
#include "programs/form_host/form_file.h"
#include "programs/form_host/settings.h"
#include "programs/form_host/windows/com.h"
#include "programs/form_host/windows/watch/names.h"
#include "runtime/utf8.h"

namespace quorvane::programs {
namespace {

constexpr const char16_t* kPassword = u"Password";

std::string Hexadecimal(std::uintptr_t number) {
  std::array<char, 11> digits{};
  std::snprintf(digits.data(), digits.size(), "0x%lX", static_cast<unsigned long>(number));
  return digits.data();
}

// As the setting that it may belong to shows everywhere else.
std::string Shown(const TaggedValue& value, Discretion discretion) {
  if (value.IsEmpty()) return "empty";
  return Display(discretion.is_secret ? Text(kPassword) : Text(), value);
}

std::string NameOfType(VARTYPE type) {
  switch (type) {
    case VT_EMPTY:
      return "VT_EMPTY";
    case VT_I2:
      return "VT_I2";
    case VT_I4:
      return "VT_I4";
    case VT_BSTR:
      return "VT_BSTR";
    case VT_BOOL:
      return "VT_BOOL";
    case VT_ERROR:
      return "VT_ERROR";
    default:
      return "VARTYPE " + std::to_string(type);
  }
}

std::string Sized(long width, long height) {
  return std::to_string(width) + " x " + std::to_string(height);
}

}  // namespace

bool NamesPassword(const wchar_t* name) {
  return name != nullptr && FromWide(name) == Text(kPassword);
}

bool NamesPassword(LONG member) {
  for (const identities::Property& setting : kSettings)
    if (setting.dispatch_id == member) return FromUtf8(setting.name) == Text(kPassword);
  return false;
}

std::string Describe(const GUID& id, Discretion /*discretion*/) { return NameOfInterface(id); }

std::string Describe(const wchar_t* text, Discretion discretion) {
  if (text == nullptr) return "null";
  if (NamesPassword(text)) return FormatValue(FromWide(text));  // a name, not a value
  return Shown(FromWide(text), discretion);
}

std::string Describe(LONG number, Discretion /*discretion*/) {
  for (const identities::Property& setting : kSettings)
    if (setting.dispatch_id == number) return setting.name;
  if (number == identities::kChecksumMember.dispatch_id) return identities::kChecksumMember.name;
  return std::to_string(number);
}

std::string Describe(const SIZEL& size, Discretion /*discretion*/) {
  return Sized(size.cx, size.cy);
}

std::string Describe(const RECT& place, Discretion /*discretion*/) {
  return Sized(place.right - place.left, place.bottom - place.top) + " at " +
         std::to_string(place.left) + ", " + std::to_string(place.top);
}

std::string Describe(const MSG& message, Discretion /*discretion*/) {
  return Hexadecimal(message.message);
}

std::string Describe(const VARIANT& value, Discretion discretion) {
  const std::string type = NameOfType(V_VT(&value));
  switch (V_VT(&value)) {
    case VT_EMPTY:
      return type;
    case VT_I2:
    case VT_I4:
    case VT_BSTR:
    case VT_BOOL:
      return type + " " + Shown(component::ToTaggedValue(value, VT_BSTR), discretion);
    default:
      return type;
  }
}

std::string Describe(const DISPPARAMS& parameters, Discretion discretion) {
  std::string list;
  for (UINT i = parameters.cArgs; i > 0; --i)  // they stand last to first
    list += (list.empty() ? "" : ", ") + Describe(parameters.rgvarg[i - 1], discretion);
  return list.empty() ? "none" : list;
}

std::string Describe(const EXCEPINFO& exception, Discretion /*discretion*/) {
  if (exception.scode == S_OK && exception.wCode == 0) return {};
  const std::string number = exception.wCode != 0 ? "error " + std::to_string(exception.wCode)
                                                  : NameOfResult(exception.scode);
  return number + " " + FormatValue(FromBstr(exception.bstrDescription)) + " of " +
         FormatValue(FromBstr(exception.bstrSource));
}

std::string Describe(HWND window, Discretion /*discretion*/) {
  return window == nullptr ? "null" : Hexadecimal(reinterpret_cast<std::uintptr_t>(window));
}

}  // namespace quorvane::programs
