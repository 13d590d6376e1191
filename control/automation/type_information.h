#pragma once

#include "control/automation/com.h"

namespace quorvane::component {

/// The module's own type library, read from its resource at the first request and given back with
/// the object: neither a registration nor a place in the registry is asked for.
class TypeInformation {
 public:
  /// The description of the interface, dispatch interface or class with that id. On failure the
  /// result of the loading, and null.
  [[nodiscard]] HRESULT Find(const GUID& id, ITypeInfo** out);

  /// Of the present interface: found once and kept, not counted for the caller; null on failure.
  [[nodiscard]] ITypeInfo* OfMembers();

 private:
  ComPtr<ITypeLib> library_;
  ComPtr<ITypeInfo> members_;
};

}  // namespace quorvane::component
