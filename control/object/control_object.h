#pragma once

#include "control/SecurityCtrl.h"
#include "control/automation/module_lock.h"
#include "control/control_site.h"
#include "control/object/connection_points.h"
#include "control/object/dispatch.h"
#include "control/object/extent.h"
#include "control/object/in_place.h"
#include "control/object/ole_object.h"
#include "control/object/persistence.h"
#include "control/object/storage.h"
#include "control/object/view.h"

namespace quorvane::component {

/// The control as a component: the logic, and a face for each group of interfaces. This class is
/// only their sum: its own IUnknown (the one that does not delegate to an outer object) with the
/// count of references, and the site that the logic talks to.
///
/// Lives on the thread that made it; only the references may be counted on any.
class ControlObject final : public IUnknown, private ControlSite {
 public:
  /// Makes a control and hands out the interface. With an outer object the control becomes part of
  /// it, and `id` must be IID_IUnknown. Throws std::bad_alloc.
  [[nodiscard]] static HRESULT Create(IUnknown* outer, REFIID id, void** out);

  ControlObject(const ControlObject&) = delete;
  ControlObject& operator=(const ControlObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;

 private:
  explicit ControlObject(IUnknown* outer);
  ~ControlObject() override;

  /// The interface of the face that has it, not counted; null when none has.
  [[nodiscard]] void* Find(REFIID id);

  // ControlSite.
  void PropertyChanged(const identities::Property& property) override;
  void SetHeight(float twips) override { extent_.SetHeight(twips); }
  void SetWidth(float twips) override { extent_.SetWidth(twips); }

  ModuleLock lock_;
  LONG references_ = 1;
  SecurityCtrl logic_;
  Extent extent_;
  DispatchFace dispatch_;
  PersistenceFace persistence_;
  StorageFace storage_;
  ConnectionPointsFace connection_points_;
  ViewFace view_;
  DataFace data_;
  InPlaceFace in_place_;
  OleObjectFace ole_object_;
  OleControlFace ole_control_;
};

}  // namespace quorvane::component
