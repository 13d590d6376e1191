#pragma once

#include "control/interface/identities.h"
#include "runtime/tagged_value.h"
#include "runtime/text.h"

namespace quorvane {

/// The container's bag of named values that is saved with the form. Any operation may raise a
/// run-time error.
class PropertyBag {
 public:
  virtual ~PropertyBag() = default;

  /// The value stored under the name, of whatever kind it was stored, or the default when the name
  /// is not stored.
  [[nodiscard]] virtual TaggedValue ReadProperty(const Text& name,
                                                 const TaggedValue& default_value) = 0;
  /// Stores the value under the name; drops the entry when the value equals the default, so that a
  /// saved form holds only what differs from the defaults.
  virtual void WriteProperty(const Text& name, const TaggedValue& value,
                             const TaggedValue& default_value) = 0;
};

/// What the control asks of its container. Any operation may raise a run-time error.
class ControlSite {
 public:
  virtual ~ControlSite() = default;

  /// Tells the container that the property changed, by its id or by its entry in a saved form: it
  /// refreshes its display and treats the control as needing to be saved.
  virtual void PropertyChanged(const identities::Property& property) = 0;
  /// Sets the control's height, in twips. May raise Resize again before it returns.
  virtual void SetHeight(float twips) = 0;
  /// Sets the control's width, likewise.
  virtual void SetWidth(float twips) = 0;
};

}  // namespace quorvane
