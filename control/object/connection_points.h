#pragma once

#include <list>
#include <vector>

#include "control/automation/com.h"
#include "control/automation/face.h"

namespace quorvane::component {

/// A sink and the cookie by which its owner may take it off again.
struct Connection {
  ComPtr<IUnknown> sink;
  DWORD cookie = 0;

  void CopyTo(CONNECTDATA* out) const {
    sink.CopyTo(&out->pUnk);
    out->dwCookie = cookie;
  }
};

/// The sinks for one outgoing interface. It is an object of its own to those who ask for
/// interfaces, but its references count as the control's.
class ConnectionPoint final : public IConnectionPoint {
 public:
  /// `container` is the control's face, not counted.
  ConnectionPoint(IConnectionPointContainer& container, const GUID& id)
      : container_(container), id_(id) {}
  ConnectionPoint(const ConnectionPoint&) = delete;
  ConnectionPoint& operator=(const ConnectionPoint&) = delete;

  [[nodiscard]] const GUID& Id() const { return id_; }
  /// A counted copy: sinks may come and go while their list is walked, and while it is copied.
  [[nodiscard]] std::vector<Connection> Connections() const;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return container_.AddRef(); }
  ULONG STDMETHODCALLTYPE Release() override { return container_.Release(); }

  HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* out) override;
  HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer** out) override;
  /// Any number of sinks. The sink is asked for the interface that the point was found under, then
  /// for IDispatch unless the point is for property notifications; CONNECT_E_CANNOTCONNECT when it
  /// has neither. A cookie is never 0 and never given twice by one control.
  HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
  /// CONNECT_E_NOCONNECTION for a cookie that this point did not give.
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
  HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** out) override;

 private:
  [[nodiscard]] ComPtr<IUnknown> AskSink(IUnknown* sink) const;

  IConnectionPointContainer& container_;
  const GUID& id_;
  std::vector<Connection> connections_;
};

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

}  // namespace quorvane::component
