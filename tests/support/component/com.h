#pragma once

// What the tests of this folder need to be a host: the system's headers, a counted pointer, texts,
// and the control's interface written down a second time, by hand, from what hosts were compiled
// against.

// Interfaces of the component model have no virtual destructor by design.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
// Behind windows.h:
#include <objbase.h>
#include <ocidl.h>
#include <olectl.h>

#include <cstring>
#include <string>
#include <utility>

#include "control/interface/identities.h"

namespace quorvane::component {

inline GUID ToGuid(const identities::Guid& id) {
  GUID result;
  std::memcpy(&result, &id, sizeof(result));
  return result;
}

/// A counted pointer to an interface; Out() is for out-arguments and releases what it held.
template <class Interface>
class Com {
 public:
  Com() = default;
  /// Takes over a reference that the caller owns.
  explicit Com(Interface* owned) : pointer_(owned) {}
  Com(const Com& other) : pointer_(other.pointer_) {
    if (pointer_ != nullptr) pointer_->AddRef();
  }
  Com(Com&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  Com& operator=(Com other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~Com() { Reset(); }

  void Reset() {
    if (pointer_ != nullptr) std::exchange(pointer_, nullptr)->Release();
  }
  Interface* Get() const { return pointer_; }
  /// Hands the reference over to the caller.
  Interface* Detach() { return std::exchange(pointer_, nullptr); }
  Interface* operator->() const { return pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }
  Interface** Out() {
    Reset();
    return &pointer_;
  }
  void** OutVoid() { return reinterpret_cast<void**>(Out()); }

  /// The other interface of the same object, or an empty pointer.
  template <class Other>
  Com<Other> As(REFIID id = __uuidof(Other)) const {
    Com<Other> other;
    pointer_->QueryInterface(id, other.OutVoid());
    return other;
  }

 private:
  Interface* pointer_ = nullptr;
};

/// A BSTR that the test owns.
class Bstr {
 public:
  Bstr() = default;
  explicit Bstr(const wchar_t* text) : text_(::SysAllocString(text)) {}
  explicit Bstr(const std::wstring& text)
      : text_(::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {}
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  ~Bstr() { ::SysFreeString(text_); }

  BSTR Get() const { return text_; }
  BSTR* Out() {
    ::SysFreeString(text_);
    text_ = nullptr;
    return &text_;
  }
  std::wstring Text() const { return {text_ == nullptr ? L"" : text_, ::SysStringLen(text_)}; }

 private:
  BSTR text_ = nullptr;
};

/// A VARIANT that the test owns. (The casts: this system's headers know no const source.)
class Variant {
 public:
  Variant() { ::VariantInit(&value_); }
  explicit Variant(const wchar_t* text) : Variant() {
    value_.vt = VT_BSTR;
    value_.bstrVal = ::SysAllocString(text);
  }
  static Variant Integer16(SHORT number) {
    Variant v;
    v.value_.vt = VT_I2;
    v.value_.iVal = number;
    return v;
  }
  static Variant Integer32(LONG number) {
    Variant v;
    v.value_.vt = VT_I4;
    v.value_.lVal = number;
    return v;
  }
  static Variant Boolean(bool value) {
    Variant v;
    v.value_.vt = VT_BOOL;
    v.value_.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    return v;
  }
  Variant(const Variant& other) : Variant() {
    ::VariantCopy(&value_, const_cast<VARIANT*>(&other.value_));
  }
  Variant& operator=(const Variant& other) {
    ::VariantCopy(&value_, const_cast<VARIANT*>(&other.value_));
    return *this;
  }
  ~Variant() { ::VariantClear(&value_); }

  VARIANT* Get() { return &value_; }
  const VARIANT& operator*() const { return value_; }
  const VARIANT* operator->() const { return &value_; }
  std::wstring Text() const {
    return value_.vt == VT_BSTR ? std::wstring(value_.bstrVal == nullptr ? L"" : value_.bstrVal,
                                               ::SysStringLen(value_.bstrVal))
                                : L"(no text)";
  }

 private:
  VARIANT value_;
};

/// The interface _SecurityCtrl as hosts were compiled against it: the order of the slots is what
/// they call by.
struct ISecurityCtrl : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_ServerAddress(BSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_ServerAddress(BSTR value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ServerPort(SHORT* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_ServerPort(SHORT value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ServerFile(BSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_ServerFile(BSTR value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_UseProxy(VARIANT_BOOL value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_UseProxy(VARIANT_BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_ProxyServer(BSTR value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ProxyServer(BSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_UserName(BSTR value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_UserName(BSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Password(BSTR value) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Password(BSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetCRCValue(LONG* value) = 0;
};

inline const GUID kSecurityCtrlId = ToGuid(identities::kPresent.interface_id);
inline const GUID kSourceId = ToGuid(identities::kPresent.source_id);
inline const GUID kClassId = ToGuid(identities::kClassId);

}  // namespace quorvane::component
