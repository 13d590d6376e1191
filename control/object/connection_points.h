#pragma once

#include <list>

#include "control/object/connection_point.h"
#include "control/object/face.h"

namespace quorvane::server {

/// The outgoing side of the control: IPropertyNotifySink, and the event interfaces of all
/// generations, which have no events but which hosts connect to all the same.
class ConnectionPointsFace final : public Face<IConnectionPointContainer> {
 public:
  using Face::Face;

  [[nodiscard]] void* Find(REFIID id);

  /// Tells every property sink that the property changed; all are told even when one fails.
  /// E_NOTIMPL means "not interested"; raises the first other failure, with the source and the
  /// description that its sink left. Sinks may call back into the control, connect and disconnect
  /// meanwhile.
  void NotifyChanged(DISPID property);

  /// Lists IPropertyNotifySink and the present event interface, once each.
  HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** out) override;
  /// CONNECT_E_NOCONNECTION for any other id than those above.
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID id, IConnectionPoint** out) override;

 private:
  [[nodiscard]] ConnectionPoint& PointOf(const GUID& id);

  std::list<ConnectionPoint> points_;  // made as they are asked for
};

}  // namespace quorvane::server
