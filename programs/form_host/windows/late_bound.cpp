#include "programs/form_host/windows/late_bound.h"

#include "runtime/ignored_result.h"
#include "runtime/runtime_error.h"

namespace quorvane::programs {
namespace {

constexpr LCID kLocale = 0x0409;

// The three strings of an EXCEPINFO belong to the caller.
struct Exception : EXCEPINFO {
  Exception() : EXCEPINFO{} {}
  Exception(const Exception&) = delete;
  Exception& operator=(const Exception&) = delete;
  ~Exception() {
    ::SysFreeString(bstrSource);
    ::SysFreeString(bstrDescription);
    ::SysFreeString(bstrHelpFile);
  }

  [[noreturn]] void Raise() {
    if (pfnDeferredFillIn != nullptr) pfnDeferredFillIn(this);
    const std::int32_t number =
        HRESULT_FACILITY(scode) == FACILITY_CONTROL ? HRESULT_CODE(scode) : std::int32_t{scode};
    throw RuntimeError{wCode != 0 ? wCode : number, FromBstr(bstrSource),
                       FromBstr(bstrDescription)};
  }
};

}  // namespace

DISPID LateBound::IdOf(const Text& member) const {
  auto* name = const_cast<wchar_t*>(Wide(member));  // asked for without const, never written to
  DISPID id = DISPID_UNKNOWN;
  Check(object_->GetIDsOfNames(IID_NULL, &name, 1, kLocale, &id), member);
  return id;
}

TaggedValue LateBound::Invoke(const Text& member, WORD kind, DISPPARAMS parameters) const {
  Variant result;
  Exception exception;
  const HRESULT outcome = object_->Invoke(IdOf(member), IID_NULL, kLocale, kind, &parameters,
                                          result.Get(), &exception, nullptr);
  if (outcome == DISP_E_EXCEPTION) exception.Raise();
  Check(outcome, member);
  return component::ToTaggedValue(*result.Get(), VT_BSTR);
}

ComPtr<ITypeInfo> LateBound::Type() const {
  ComPtr<ITypeInfo> type;
  Check(object_->GetTypeInfo(0, kLocale, type.Receive()), u"IDispatch.GetTypeInfo");
  return type;
}

TaggedValue LateBound::Get(const Text& property) const {
  return Invoke(property, DISPATCH_PROPERTYGET, {});
}

TaggedValue LateBound::Call(const Text& method) const {
  return Invoke(method, DISPATCH_METHOD, {});
}

void LateBound::Put(const Text& property, const TaggedValue& value) const {
  Variant argument(value);
  DISPID put = DISPID_PROPERTYPUT;
  IgnoreResult(Invoke(property, DISPATCH_PROPERTYPUT, {argument.Get(), &put, 1, 1}));
}

}  // namespace quorvane::programs
