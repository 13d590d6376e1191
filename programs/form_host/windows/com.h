#pragma once

#include <atomic>
#include <utility>

#include "control/automation/com.h"
#include "control/automation/strings.h"
#include "control/automation/variant_value.h"
#include "runtime/text.h"

namespace quorvane::programs {

using component::ComPtr;
using component::FromBstr;
using component::Query;
using component::Variant;
using component::Wide;

/// A new object of the container, with its one reference.
template <class Object, class... Arguments>
[[nodiscard]] ComPtr<Object> Make(Arguments&&... arguments) {
  ComPtr<Object> made;
  *made.Receive() = new Object(std::forward<Arguments>(arguments)...);
  return made;
}

/// A terminated string's characters.
[[nodiscard]] inline Text FromWide(const wchar_t* characters) {
  return Text(reinterpret_cast<const char16_t*>(characters));
}

/// The base of the container's own objects: counts references (from 1 on) and answers to the ids of
/// the interfaces. An interface that is itself based on another than IUnknown answers to its own id
/// only, unless the class overrides Other().
template <class First, class... Rest>
class Counted : public First, public Rest... {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) override {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    if (id == IID_IUnknown) *out = static_cast<First*>(this);
    Offer<First>(id, out);
    (Offer<Rest>(id, out), ...);
    if (*out == nullptr) *out = Other(id);
    if (*out == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++count_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --count_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  Counted() = default;
  virtual ~Counted() = default;
  virtual void* Other(REFIID /*id*/) { return nullptr; }

 private:
  template <class Interface>
  void Offer(REFIID id, void** out) {
    if (id == __uuidof(Interface)) *out = static_cast<Interface*>(this);
  }

  std::atomic<ULONG> count_{1};
};

/// Raises the run-time error for a failing result; `source` names what failed. Results of
/// automation become the numbers that script hosts show for them: type mismatch (13), overflow (6),
/// no such member (438); 0x800A0000 + n is n; any other result is its own number.
void Check(HRESULT result, const Text& source);

/// The run-time error for a failing result: see Check().
[[noreturn]] void RaiseResult(HRESULT result, const Text& source);

}  // namespace quorvane::programs
