#include "control/object/control_object.h"

namespace quorvane::component {
namespace {

// The count while the object is destroyed: whatever is called back then may take and give back
// references without ending it again.
constexpr LONG kBeingDestroyed = 0x4000'0000;

}  // namespace

HRESULT ControlObject::Create(IUnknown* outer, REFIID id, void** out) {
  auto* const control = new ControlObject(outer);
  const HRESULT result = control->QueryInterface(id, out);
  control->Release();
  return result;
}

ControlObject::ControlObject(IUnknown* outer)
    : logic_(static_cast<ControlSite&>(*this)),
      dispatch_(outer != nullptr ? outer : this, logic_),
      persistence_(outer != nullptr ? outer : this, logic_),
      storage_(outer != nullptr ? outer : this, persistence_),
      connection_points_(outer != nullptr ? outer : this),
      view_(outer != nullptr ? outer : this, extent_),
      data_(outer != nullptr ? outer : this, extent_, storage_),
      in_place_(outer != nullptr ? outer : this, logic_, extent_),
      ole_object_(outer != nullptr ? outer : this, logic_, extent_, persistence_, in_place_, view_),
      ole_control_(outer != nullptr ? outer : this) {
  logic_.Initialize();
  logic_.Resize();
}

ControlObject::~ControlObject() {
  in_place_.Deactivate();
  logic_.Terminate();
}

HRESULT ControlObject::QueryInterface(REFIID id, void** out) {
  if (out == nullptr) return E_POINTER;
  *out = Find(id);
  if (*out == nullptr) return E_NOINTERFACE;
  // Through the interface handed out: a face counts at the outer object.
  static_cast<IUnknown*>(*out)->AddRef();
  return S_OK;
}

ULONG ControlObject::AddRef() { return static_cast<ULONG>(::InterlockedIncrement(&references_)); }

ULONG ControlObject::Release() {
  const LONG left = ::InterlockedDecrement(&references_);
  if (left == 0) {
    const ModuleLock until_all_is_done;
    references_ = kBeingDestroyed;
    delete this;
  }
  return static_cast<ULONG>(left);
}

void* ControlObject::Find(REFIID id) {
  if (id == __uuidof(IUnknown)) return static_cast<IUnknown*>(this);
  if (void* found = dispatch_.Find(id)) return found;
  if (void* found = persistence_.Find(id)) return found;
  if (void* found = storage_.Find(id)) return found;
  if (void* found = connection_points_.Find(id)) return found;
  if (void* found = view_.Find(id)) return found;
  if (void* found = data_.Find(id)) return found;
  if (void* found = in_place_.Find(id)) return found;
  if (void* found = ole_object_.Find(id)) return found;
  return ole_control_.Find(id);
}

void ControlObject::PropertyChanged(const identities::Property& property) {
  persistence_.MarkDirty();
  connection_points_.NotifyChanged(property.dispatch_id);
}

}  // namespace quorvane::component
