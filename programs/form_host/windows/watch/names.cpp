#include "programs/form_host/windows/watch/names.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "control/automation/error_to_hresult.h"
#include "control/automation/strings.h"
#include "programs/form_host/windows/watch/interface.h"
#include "runtime/utf8.h"

namespace quorvane::programs {
namespace {

struct NamedResult {
  HRESULT result;
  const char* name;
};

constexpr auto kResults = std::to_array<NamedResult>({
    {S_OK, "S_OK"},
    {S_FALSE, "S_FALSE"},
    {E_NOTIMPL, "E_NOTIMPL"},
    {E_NOINTERFACE, "E_NOINTERFACE"},
    {E_POINTER, "E_POINTER"},
    {E_ABORT, "E_ABORT"},
    {E_FAIL, "E_FAIL"},
    {E_UNEXPECTED, "E_UNEXPECTED"},
    {E_ACCESSDENIED, "E_ACCESSDENIED"},
    {E_OUTOFMEMORY, "E_OUTOFMEMORY"},
    {E_INVALIDARG, "E_INVALIDARG"},
    {E_PENDING, "E_PENDING"},
    {DISP_E_UNKNOWNINTERFACE, "DISP_E_UNKNOWNINTERFACE"},
    {DISP_E_MEMBERNOTFOUND, "DISP_E_MEMBERNOTFOUND"},
    {DISP_E_PARAMNOTFOUND, "DISP_E_PARAMNOTFOUND"},
    {DISP_E_TYPEMISMATCH, "DISP_E_TYPEMISMATCH"},
    {DISP_E_UNKNOWNNAME, "DISP_E_UNKNOWNNAME"},
    {DISP_E_NONAMEDARGS, "DISP_E_NONAMEDARGS"},
    {DISP_E_BADVARTYPE, "DISP_E_BADVARTYPE"},
    {DISP_E_EXCEPTION, "DISP_E_EXCEPTION"},
    {DISP_E_OVERFLOW, "DISP_E_OVERFLOW"},
    {DISP_E_BADPARAMCOUNT, "DISP_E_BADPARAMCOUNT"},
    {DISP_E_PARAMNOTOPTIONAL, "DISP_E_PARAMNOTOPTIONAL"},
    {DV_E_DVASPECT, "DV_E_DVASPECT"},
    {DV_E_FORMATETC, "DV_E_FORMATETC"},
    {OLE_E_NOCONNECTION, "OLE_E_NOCONNECTION"},
    {OLE_E_ADVISENOTSUPPORTED, "OLE_E_ADVISENOTSUPPORTED"},
    {OLE_E_NOTRUNNING, "OLE_E_NOTRUNNING"},
    {OLE_E_NOT_INPLACEACTIVE, "OLE_E_NOT_INPLACEACTIVE"},
    {OLE_E_PROMPTSAVECANCELLED, "OLE_E_PROMPTSAVECANCELLED"},
    {OLE_S_USEREG, "OLE_S_USEREG"},
    {OLEOBJ_E_NOVERBS, "OLEOBJ_E_NOVERBS"},
    {OLEOBJ_E_INVALIDVERB, "OLEOBJ_E_INVALIDVERB"},
    {OLEOBJ_S_INVALIDVERB, "OLEOBJ_S_INVALIDVERB"},
    {INPLACE_E_NOTUNDOABLE, "INPLACE_E_NOTUNDOABLE"},
    {INPLACE_E_NOTOOLSPACE, "INPLACE_E_NOTOOLSPACE"},
    {CONNECT_E_NOCONNECTION, "CONNECT_E_NOCONNECTION"},
    {CONNECT_E_ADVISELIMIT, "CONNECT_E_ADVISELIMIT"},
    {CONNECT_E_CANNOTCONNECT, "CONNECT_E_CANNOTCONNECT"},
    {CO_E_ALREADYINITIALIZED, "CO_E_ALREADYINITIALIZED"},
    {CO_E_NOTINITIALIZED, "CO_E_NOTINITIALIZED"},
    {CLASS_E_NOAGGREGATION, "CLASS_E_NOAGGREGATION"},
    {CLASS_E_CLASSNOTAVAILABLE, "CLASS_E_CLASSNOTAVAILABLE"},
    {STG_E_MEDIUMFULL, "STG_E_MEDIUMFULL"},
    {STG_E_ACCESSDENIED, "STG_E_ACCESSDENIED"},
});

std::string Hexadecimal(HRESULT result) {
  std::array<char, 11> digits{};
  std::snprintf(digits.data(), digits.size(), "0x%08lX", static_cast<unsigned long>(result));
  return digits.data();
}

// In the form of the registry: capitals in braces.
Text Spelled(REFIID id) {
  std::array<wchar_t, 39> characters{};
  ::StringFromGUID2(id, characters.data(), static_cast<int>(characters.size()));
  return Text(reinterpret_cast<const char16_t*>(characters.data()));
}

// Empty where the system knows no name.
std::string NameInRegistry(const Text& id) {
  const Text key = u"Interface\\" + id;
  std::array<wchar_t, 128> name{};
  LONG size = sizeof name - sizeof name.front();
  if (::RegQueryValueW(HKEY_CLASSES_ROOT, component::Wide(key), name.data(), &size) !=
      ERROR_SUCCESS)
    return {};
  return ToUtf8(Text(reinterpret_cast<const char16_t*>(name.data())));
}

}  // namespace

std::string NameOfResult(HRESULT result) {
  const auto* const named = std::ranges::find(kResults, result, &NamedResult::result);
  if (named != kResults.end()) return named->name;
  const std::int32_t number = component::NumberOf(result);
  const std::string digits = Hexadecimal(result);
  return number > 0 ? digits + " (error " + std::to_string(number) + ")" : digits;
}

std::string NameOfInterface(REFIID id) {
  if (id == GUID_NULL) return "GUID_NULL";
  if (const Interface* const watched = FindInterface(id)) return watched->name;
  const Text spelled = Spelled(id);
  const std::string name = NameInRegistry(spelled);
  return name.empty() ? ToUtf8(spelled) : name;
}

}  // namespace quorvane::programs
