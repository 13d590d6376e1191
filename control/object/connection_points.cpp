#include "control/object/connection_points.h"

#include <algorithm>
#include <atomic>
#include <optional>
#include <utility>
#include <vector>

#include "control/automation/enumerator.h"
#include "control/automation/error_to_hresult.h"
#include "control/interface/identities.h"

namespace quorvane::component {
namespace {

// One sequence for the whole module, so that a cookie given to the wrong point is unknown there.
DWORD NextCookie() {
  static constinit std::atomic<DWORD> last{0};
  DWORD next = ++last;
  while (next == 0) next = ++last;
  return next;
}

using ConnectionEnumerator = Enumerator<IEnumConnections, Connection, CONNECTDATA>;

// The id as a constant that outlives the caller's, or null when no point bears it.
const GUID* KnownId(REFIID id) {
  if (id == __uuidof(IPropertyNotifySink)) return &__uuidof(IPropertyNotifySink);
  for (const identities::Generation& one : identities::kGenerations) {
    if (AsGuid(one.source_id) == id) return &AsGuid(one.source_id);
  }
  return nullptr;
}

using PointEnumerator =
    Enumerator<IEnumConnectionPoints, ComPtr<IConnectionPoint>, IConnectionPoint*>;

}  // namespace

HRESULT ConnectionPoint::QueryInterface(REFIID id, void** out) {
  if (out == nullptr) return E_POINTER;
  const bool is_ours = id == __uuidof(IUnknown) || id == __uuidof(IConnectionPoint);
  *out = is_ours ? static_cast<IConnectionPoint*>(this) : nullptr;
  if (!is_ours) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

HRESULT ConnectionPoint::GetConnectionInterface(IID* out) {
  if (out == nullptr) return E_POINTER;
  *out = id_;
  return S_OK;
}

HRESULT ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** out) {
  if (out == nullptr) return E_POINTER;
  ComPtr<IConnectionPointContainer>(&container_).CopyTo(out);
  return S_OK;
}

ComPtr<IUnknown> ConnectionPoint::AskSink(IUnknown* sink) const {
  auto asked = Query<IUnknown>(sink, id_);
  if (!asked && id_ != __uuidof(IPropertyNotifySink))
    asked = Query<IUnknown>(sink, __uuidof(IDispatch));
  return asked;
}

HRESULT ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie) {
  if (cookie != nullptr) *cookie = 0;
  if (sink == nullptr || cookie == nullptr) return E_POINTER;
  const ComPtr<IUnknown> alive(this);
  return Guarded([&]() -> HRESULT {
    const ComPtr<IUnknown> asked = AskSink(sink);
    if (!asked) return CONNECT_E_CANNOTCONNECT;
    const DWORD given = NextCookie();
    connections_.push_back({asked, given});
    *cookie = given;
    return S_OK;
  });
}

HRESULT ConnectionPoint::Unadvise(DWORD cookie) {
  const ComPtr<IUnknown> alive(this);
  const auto found = std::ranges::find(connections_, cookie, &Connection::cookie);
  if (found == connections_.end()) return CONNECT_E_NOCONNECTION;
  // Off the list first: the sink may end with its last reference, and call back.
  const Connection taken = std::move(*found);
  connections_.erase(found);
  return S_OK;
}

std::vector<Connection> ConnectionPoint::Connections() const {
  std::vector<Connection> copy;
  for (std::size_t i = 0; i < connections_.size(); ++i) {
    const DWORD cookie = connections_[i].cookie;
    copy.push_back({ComPtr<IUnknown>(connections_[i].sink.Get()), cookie});
  }
  return copy;
}

HRESULT ConnectionPoint::EnumConnections(IEnumConnections** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  const ComPtr<IUnknown> alive(this);
  return Guarded([&] {
    ConnectionEnumerator::Create(Connections(), 0, out);
    return S_OK;
  });
}

void* ConnectionPointsFace::Find(REFIID id) {
  return InterfaceMap<IConnectionPointContainer>::Find(*this, id);
}

ConnectionPoint& ConnectionPointsFace::PointOf(const GUID& id) {
  const auto found = std::ranges::find(points_, id, &ConnectionPoint::Id);
  return found != points_.end() ? *found : points_.emplace_back(*this, id);
}

void ConnectionPointsFace::NotifyChanged(DISPID property) {
  const auto alive = KeepAlive();
  std::optional<RuntimeError> failure;
  for (const Connection& connection : PointOf(__uuidof(IPropertyNotifySink)).Connections()) {
    ::SetErrorInfo(0, nullptr);
    const HRESULT result =
        static_cast<IPropertyNotifySink*>(connection.sink.Get())->OnChanged(property);
    if (FAILED(result) && result != E_NOTIMPL && !failure) failure = FailedCall(result);
  }
  if (failure) throw RuntimeError(*failure);
}

HRESULT ConnectionPointsFace::EnumConnectionPoints(IEnumConnectionPoints** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  return Guarded([&] {
    std::vector<ComPtr<IConnectionPoint>> points;
    points.emplace_back(&PointOf(__uuidof(IPropertyNotifySink)));
    points.emplace_back(&PointOf(AsGuid(identities::kPresent.source_id)));
    PointEnumerator::Create(std::move(points), 0, out);
    return S_OK;
  });
}

HRESULT ConnectionPointsFace::FindConnectionPoint(REFIID id, IConnectionPoint** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  const GUID* const known = KnownId(id);
  if (known == nullptr) return CONNECT_E_NOCONNECTION;
  return Guarded([&] {
    ComPtr<IConnectionPoint>(&PointOf(*known)).CopyTo(out);
    return S_OK;
  });
}

}  // namespace quorvane::component
