// The lightest module that can be loaded, asked for a class object, made to create something and
// unloaded: what the real one is held against. It imports the system's base library and the C
// library only.

#include <new>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>
// Behind windows.h:
#include <unknwn.h>

#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

namespace {

class Plain final : public IClassFactory {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID /*id*/, void** out) override {
    *out = this;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* /*outer*/, REFIID /*id*/,
                                           void** out) override {
    *out = new (std::nothrow) Plain;
    return *out != nullptr ? S_OK : E_OUTOFMEMORY;
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL /*lock*/) override { return S_OK; }

 private:
  ULONG references_ = 1;
};

}  // namespace

extern "C" __declspec(dllexport) HRESULT STDMETHODCALLTYPE
    DllGetClassObject(REFCLSID /*class_id*/, REFIID /*id*/, void** out) {
  *out = new (std::nothrow) Plain;
  return *out != nullptr ? S_OK : E_OUTOFMEMORY;
}
