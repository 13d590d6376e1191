#pragma once

#include "control/automation/com.h"
#include "runtime/ignored_result.h"

namespace quorvane::component {

/// A face of the control: the part that answers one group of interfaces. It has no life of its own:
/// its IUnknown is the outer object's, which is the control itself or the container's object that
/// aggregates it.
template <class... Interfaces>
class Face : public Interfaces... {
 public:
  /// `outer` is not counted: it lives as long as the face.
  explicit Face(IUnknown* outer) : outer_(outer) {}
  Face(const Face&) = delete;
  Face& operator=(const Face&) = delete;
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) final {
    return outer_->QueryInterface(id, out);
  }
  ULONG STDMETHODCALLTYPE AddRef() final { return outer_->AddRef(); }
  ULONG STDMETHODCALLTYPE Release() final { return outer_->Release(); }

 protected:
  /// Faces are members of the control and end with it, never by themselves.
  ~Face() = default;

  /// Holds the whole object over a call out of it, whose receiver may give back the last reference.
  [[nodiscard]] ComPtr<IUnknown> KeepAlive() const { return ComPtr<IUnknown>(outer_); }

 private:
  IUnknown* outer_;
};

/// The interface map of a face: the interfaces that it answers for.
template <class... Interfaces>
struct InterfaceMap {
  /// The first of them that bears the id, as the pointer that QueryInterface hands out, not yet
  /// counted; null when none does.
  template <class Object>
  [[nodiscard]] static void* Find(Object& object, REFIID id) {
    void* found = nullptr;
    IgnoreResult(
        ((id == __uuidof(Interfaces) && (found = static_cast<Interfaces*>(&object), true)) || ...));
    return found;
  }
};

}  // namespace quorvane::component
