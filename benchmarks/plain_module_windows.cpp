// The lightest module that can be loaded, asked for a class object, made to create something and
// unloaded: what the real one is held against. It imports the system's base library and the C
// library only, and nothing of the C++ library is in it, so its one object is always there.
//
// Built a second time without the compiler's start-up code, it has the entry function below.

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
  ULONG STDMETHODCALLTYPE Release() override { return --references_; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* /*outer*/, REFIID id, void** out) override {
    return QueryInterface(id, out);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL /*lock*/) override { return S_OK; }

 private:
  ULONG references_ = 1;
};

Plain plain;

}  // namespace

extern "C" __declspec(dllexport) HRESULT STDMETHODCALLTYPE
    DllGetClassObject(REFCLSID /*class_id*/, REFIID id, void** out) {
  return plain.QueryInterface(id, out);
}

#ifdef QUORVANE_BARE
extern "C" BOOL WINAPI DllMainCRTStartup(HINSTANCE /*module*/, DWORD /*reason*/,
                                         void* /*process_ends*/) {
  return TRUE;
}
#endif
