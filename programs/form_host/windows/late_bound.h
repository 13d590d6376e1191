#pragma once

#include "programs/form_host/windows/com.h"
#include "runtime/tagged_value.h"

namespace quorvane::programs {

/// A control's members by their names, through IDispatch, as a script calls them. A failing call
/// raises the run-time error that the control has raised: number, source and description.
class LateBound {
 public:
  explicit LateBound(ComPtr<IDispatch> object) : object_(std::move(object)) {}

  /// Raises no such member (438).
  [[nodiscard]] DISPID IdOf(const Text& member) const;
  [[nodiscard]] TaggedValue Get(const Text& property) const;
  void Put(const Text& property, const TaggedValue& value) const;
  [[nodiscard]] TaggedValue Call(const Text& method) const;
  /// What the control's type library says of the members.
  [[nodiscard]] ComPtr<ITypeInfo> Type() const;

 private:
  [[nodiscard]] TaggedValue Invoke(const Text& member, WORD kind, DISPPARAMS parameters) const;

  ComPtr<IDispatch> object_;
};

}  // namespace quorvane::programs
