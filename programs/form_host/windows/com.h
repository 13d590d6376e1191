#pragma once

#include <windows.h>
// The system's headers follow windows.h.
#include <ole2.h>
#include <olectl.h>

#include <atomic>
#include <utility>

#include "runtime/text.h"

// The component model's interfaces have no virtual destructor: their objects end by their count of
// references, never through an interface.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

namespace quorvane::examples {

/// A counted reference to an interface, or none.
template <class Interface>
class ComPtr {
 public:
  ComPtr() = default;
  /// Takes over the reference that `new` or a call has made.
  explicit ComPtr(Interface* made) : pointer_(made) {}
  ComPtr(const ComPtr&) = delete;
  ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~ComPtr() {
    if (pointer_ != nullptr) pointer_->Release();
  }

  [[nodiscard]] Interface* Get() const { return pointer_; }
  Interface* operator->() const { return pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }

  /// Where a call stores a reference that it hands out; for an empty pointer only.
  [[nodiscard]] Interface** Receive() { return &pointer_; }

  /// The same object by another interface; empty when it has none.
  template <class Other>
  [[nodiscard]] ComPtr<Other> As() const {
    ComPtr<Other> other;
    if (pointer_ != nullptr)
      pointer_->QueryInterface(__uuidof(Other), reinterpret_cast<void**>(other.Receive()));
    return other;
  }

 private:
  Interface* pointer_ = nullptr;
};

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

}  // namespace quorvane::examples
