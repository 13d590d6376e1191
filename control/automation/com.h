// The one way to the component model's headers for this room, and what every file of it needs to
// hold interfaces.
#pragma once

#include "platform/windows/os_headers.h"
// The system's headers follow it.
#include <ole2.h>
#include <olectl.h>

#include <utility>

#include "control/interface/guid.h"

// The component model's interfaces have no virtual destructor: their objects end by their count of
// references, never through an interface.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

namespace quorvane::component {

/// An id of the house as the component model sees it: the same 16 bytes.
[[nodiscard]] inline const GUID& AsGuid(const identities::Guid& id) {
  return reinterpret_cast<const GUID&>(id);
}

/// A counted reference to an interface, or none.
template <class Interface>
class ComPtr {
 public:
  ComPtr() = default;
  /// Takes a reference of its own.
  explicit ComPtr(Interface* pointer) : pointer_(pointer) {
    if (pointer_ != nullptr) pointer_->AddRef();
  }
  ComPtr(const ComPtr& other) : ComPtr(other.pointer_) {}
  ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  /// The old reference is given back last: by then the member holds the new one, whatever the
  /// object that may end there calls back.
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

  void Reset() { *this = ComPtr(); }
  /// Where a call stores a reference that it hands out.
  [[nodiscard]] Interface** Receive() {
    Reset();
    return &pointer_;
  }
  /// Copies the pointer to a caller's out pointer, with a reference of its own.
  void CopyTo(Interface** out) const { *out = ComPtr(*this).Detach(); }

 private:
  [[nodiscard]] Interface* Detach() { return std::exchange(pointer_, nullptr); }

  Interface* pointer_ = nullptr;
};

/// The interface with that id, or none when the object does not offer it, whatever it says or does
/// to the result: only a pointer that came with a success counts.
template <class Interface>
[[nodiscard]] ComPtr<Interface> Query(IUnknown* object, REFIID id = __uuidof(Interface)) {
  void* answer = nullptr;
  ComPtr<Interface> found;
  if (object != nullptr && SUCCEEDED(object->QueryInterface(id, &answer)))
    *found.Receive() = static_cast<Interface*>(answer);
  return found;
}

}  // namespace quorvane::component
