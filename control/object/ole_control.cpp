#include "control/object/ole_control.h"

namespace quorvane::server {

void* OleControlFace::Find(REFIID id) { return FindInterface<IOleControl>(*this, id); }

HRESULT OleControlFace::GetControlInfo(CONTROLINFO* out) {
  if (out == nullptr) return E_POINTER;
  out->hAccel = nullptr;
  out->cAccel = 0;
  out->dwFlags = 0;
  return S_OK;
}

HRESULT OleControlFace::OnMnemonic(MSG* /*message*/) { return S_OK; }

HRESULT OleControlFace::OnAmbientPropertyChange(DISPID /*id*/) { return S_OK; }

HRESULT OleControlFace::FreezeEvents(BOOL /*freeze*/) { return S_OK; }

}  // namespace quorvane::server
