#pragma once

#include "control/object/face.h"

namespace quorvane::server {

/// The control side towards the container: no keys, no ambient property is read, and there are no
/// events to freeze. Property notifications go out all the same while events are frozen, since some
/// designers never thaw them.
class OleControlFace final : public Face<IOleControl> {
 public:
  using Face::Face;

  [[nodiscard]] void* Find(REFIID id);

  HRESULT STDMETHODCALLTYPE GetControlInfo(CONTROLINFO* out) override;
  HRESULT STDMETHODCALLTYPE OnMnemonic(MSG* message) override;
  HRESULT STDMETHODCALLTYPE OnAmbientPropertyChange(DISPID id) override;
  HRESULT STDMETHODCALLTYPE FreezeEvents(BOOL freeze) override;
};

}  // namespace quorvane::server
