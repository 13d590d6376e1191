#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/support/component/unknown_base.h"

namespace quorvane::component {

/// A container's property bag. Its ways of saying "missing" and of treating the type hint are those
/// that containers have.
class FakeBag final : public FakeUnknown<IPropertyBag> {
 public:
  enum class Missing {
    kInvalidArgument,    ///< E_INVALIDARG, the value empty
    kParameterNotFound,  ///< S_OK with VT_ERROR / DISP_E_PARAMNOTFOUND
    kSucceedsWithEmpty,  ///< S_OK with VT_EMPTY
  };
  enum class Hint {
    kIgnored,  ///< the stored type comes back
    kObeyed,   ///< converted to the type of the VARIANT that came in; a failed conversion fails the
               ///< read
  };

  explicit FakeBag(Missing missing = Missing::kInvalidArgument, Hint hint = Hint::kIgnored)
      : missing_(missing), hint_(hint) {}

  HRESULT STDMETHODCALLTYPE Read(LPCOLESTR name, VARIANT* value, IErrorLog* log) override {
    if (on_call) on_call();
    logs.push_back(log);
    reads.emplace_back(name);
    hints.push_back(value->vt);
    if (++calls_ == failing_call) return failure;
    const auto found = entries.find(name);
    if (found == entries.end()) return SayMissing(value);
    if (hint_ == Hint::kObeyed) {
      return ::VariantChangeType(value, const_cast<VARIANT*>(&*found->second), 0, value->vt);
    }
    return ::VariantCopy(value, const_cast<VARIANT*>(&*found->second));
  }

  HRESULT STDMETHODCALLTYPE Write(LPCOLESTR name, VARIANT* value) override {
    if (on_call) on_call();
    if (++calls_ == failing_call) return failure;
    ::VariantCopy(entries[name].Get(), value);
    return S_OK;
  }

  std::map<std::wstring, Variant> entries;
  std::vector<std::wstring> reads;
  std::vector<VARTYPE> hints;
  std::vector<IErrorLog*> logs;  ///< where each Read was asked to write its errors
  int failing_call = 0;          ///< counted from 1; 0 for none
  HRESULT failure = E_FAIL;
  std::function<void()> on_call;  ///< what it does first at each Read and Write

 private:
  void* Find(REFIID id) override {
    return IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IPropertyBag) ? this : nullptr;
  }

  HRESULT SayMissing(VARIANT* value) const {
    if (missing_ == Missing::kInvalidArgument) return E_INVALIDARG;
    value->vt = missing_ == Missing::kParameterNotFound ? VT_ERROR : VT_EMPTY;
    if (value->vt == VT_ERROR) value->scode = DISP_E_PARAMNOTFOUND;
    return S_OK;
  }

  Missing missing_;
  Hint hint_;
  int calls_ = 0;
};

/// A container's log of what went wrong while a form was loaded.
class FakeErrorLog final : public FakeUnknown<IErrorLog> {
 public:
  HRESULT STDMETHODCALLTYPE AddError(LPCOLESTR, EXCEPINFO*) override {
    ++errors;
    return S_OK;
  }

  int errors = 0;

 private:
  void* Find(REFIID id) override {
    return IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IErrorLog) ? this : nullptr;
  }
};

}  // namespace quorvane::component
