#pragma once

#include <type_traits>

#include "control/SecurityCtrl.h"
#include "control/automation/error_to_hresult.h"
#include "control/automation/face.h"
#include "control/automation/strings.h"
#include "control/automation/type_information.h"
#include "control/object/security_ctrl_members.h"

namespace quorvane::component {

/// The members of the control, early bound (_SecurityCtrl) and late bound (IDispatch, over the
/// module's own type library), and what tells about them.
///
/// An out pointer that is null gives E_POINTER; any other is null or 0 first, because it is copied
/// out even from a failed call. A failing member gives 0x800A0000 + number and leaves the error
/// object; Invoke makes DISP_E_EXCEPTION of it. No argument is checked.
class DispatchFace final
    : public Face<SecurityCtrlMembers<DispatchFace>, ISupportErrorInfo, IProvideClassInfo2> {
 public:
  DispatchFace(IUnknown* outer, SecurityCtrl& logic) : Face(outer), logic_(logic) {}

  [[nodiscard]] void* Find(REFIID id);

  // IDispatch. Names count without case; the locale is not looked at.
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** out) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override;
  /// Reaches the members of the table in identities.h and nothing else: what IDispatch and IUnknown
  /// bring along (Release!) is DISP_E_MEMBERNOTFOUND, like any unknown number.
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags,
                                   DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                                   UINT* wrong_argument) override;

  // _SecurityCtrl. The slots of the properties come from SecurityCtrlMembers and end in these two.
  template <class Value, class Raw>
  [[nodiscard]] HRESULT Get(const settings::Setting<Value>& setting, Raw* value) {
    if (value == nullptr) return E_POINTER;
    *value = {};
    return GuardedMember([&] { *value = OutOf(logic_.Get(setting)); });
  }
  template <class Value, class Raw>
  [[nodiscard]] HRESULT Put(const settings::Setting<Value>& setting, Raw value) {
    const auto alive = KeepAlive();
    return GuardedMember([&] { logic_.Put(setting, Into<Value>(value)); });
  }
  HRESULT STDMETHODCALLTYPE GetCRCValue(long* value) override;

  // ISupportErrorInfo.
  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) override;

  // IProvideClassInfo2.
  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** out) override;
  HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* out) override;

 private:
  // A setting's value in the types of automation, and back.
  [[nodiscard]] static BSTR OutOf(const Text& value) { return NewBstr(value); }
  [[nodiscard]] static short OutOf(std::int16_t value) { return value; }
  [[nodiscard]] static VARIANT_BOOL OutOf(Boolean16 value) { return value.bits; }
  template <class Value, class Raw>
  [[nodiscard]] static Value Into(Raw value) {
    if constexpr (std::is_same_v<Value, Text>)
      return FromBstr(value);
    else
      return Value{value};
  }

  SecurityCtrl& logic_;
  TypeInformation types_;
};

}  // namespace quorvane::component
