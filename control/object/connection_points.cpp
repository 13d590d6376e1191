#include "control/object/connection_points.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "control/automation/enumerator.h"
#include "control/automation/error_to_hresult.h"
#include "control/interface/identities.h"

namespace quorvane::server {
namespace {

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

void* ConnectionPointsFace::Find(REFIID id) {
  return FindInterface<IConnectionPointContainer>(*this, id);
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

}  // namespace quorvane::server
