#pragma once

#include "control/automation/com.h"
#include "control/control_site.h"

namespace quorvane::server {

/// The container's IPropertyBag as the control's logic sees it. Holds nothing beyond the call that
/// brought the bag.
class ContainerBag final : public PropertyBag {
 public:
  /// The log may be null; the bag must not.
  ContainerBag(IPropertyBag& bag, IErrorLog* log) : bag_(bag), log_(log) {}

  /// The bag is told the type of the default as the wanted one, and whatever comes back is taken.
  /// Containers say "not stored" in three ways: E_INVALIDARG; S_OK with VT_EMPTY; S_OK with
  /// DISP_E_PARAMNOTFOUND in the value. Any other failure raises overflow (6) for DISP_E_OVERFLOW,
  /// else type mismatch (13).
  [[nodiscard]] TaggedValue ReadProperty(const Text& name,
                                         const TaggedValue& default_value) override;
  /// Writes nothing when the value equals the default. Raises the number of the bag's failure.
  void WriteProperty(const Text& name, const TaggedValue& value,
                     const TaggedValue& default_value) override;

 private:
  IPropertyBag& bag_;
  IErrorLog* log_;
};

}  // namespace quorvane::server
