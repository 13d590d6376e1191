// ATL's hosting window (atl100.dll) as the container: it makes the control from a stream of saved
// settings, activates it, is resized, has a property sink advised, and is destroyed.

#include "tests/hosts/host_windows.h"

namespace {

template <class Function>
Function* Export(HMODULE library, const char* name) {
  const FARPROC address = ::GetProcAddress(library, name);
  if (address == nullptr) Must(HRESULT_FROM_WIN32(::GetLastError()), name);
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(address));
}

// Lives on the stack; its count is of no consequence.
class Sink final : public IPropertyNotifySink {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) override {
    const bool known = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IPropertyNotifySink);
    *out = known ? this : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE OnChanged(DISPID) override {
    return std::puts("told of a change"), S_OK;
  }
  HRESULT STDMETHODCALLTYPE OnRequestEdit(DISPID) override { return S_OK; }
  ULONG references = 0;
};

void SaveControl(IStream* stream) {
  Held<ISecurityCtrl> control;
  Held<IPersistStreamInit> saved;
  Must(::CoCreateInstance(CLSID_SecurityCtrl, nullptr, CLSCTX_INPROC_SERVER, IID_ISecurityCtrl,
                          control.OutVoid()),
       "CoCreateInstance");
  Must(control->QueryInterface(IID_IPersistStreamInit, saved.OutVoid()), "IPersistStreamInit");
  Must(saved->InitNew(), "InitNew");
  PutAddress(control.Get(), L"saved.example.com");
  Must(saved->Save(stream, TRUE), "Save");
  PutAddress(control.Get(), L"later.example.com");
  Must(stream->Seek({}, STREAM_SEEK_SET, nullptr), "Seek");
}

void TellWindow(HWND host) {
  RECT place{};
  const HWND control = ::GetWindow(host, GW_CHILD);
  ::GetClientRect(control, &place);
  std::printf("a window of %ld x %ld in one of ", place.right, place.bottom);
  ::GetClientRect(host, &place);
  std::printf("%ld x %ld\n", place.right, place.bottom);
}

void Host() {
  const HMODULE atl = ::LoadLibraryW(L"atl100.dll");
  Export<BOOL WINAPI()>(atl, "AtlAxWinInit")();
  const auto create =
      Export<HRESULT WINAPI(LPCOLESTR, HWND, IStream*, IUnknown**, IUnknown**, REFIID, IUnknown*)>(
          atl, "AtlAxCreateControlEx");
  const auto get = Export<HRESULT WINAPI(HWND, IUnknown**)>(atl, "AtlAxGetControl");
  const auto advise =
      Export<HRESULT WINAPI(IUnknown*, IUnknown*, const IID*, DWORD*)>(atl, "AtlAdvise");
  const auto unadvise = Export<HRESULT WINAPI(IUnknown*, const IID*, DWORD)>(atl, "AtlUnadvise");

  Held<IStream> stream;
  Must(::CreateStreamOnHGlobal(nullptr, TRUE, stream.Out()), "CreateStreamOnHGlobal");
  SaveControl(stream.Get());
  const HWND host = ::CreateWindowW(L"STATIC", L"host", WS_POPUP, 0, 0, 60, 40, nullptr, nullptr,
                                    nullptr, nullptr);
  Held<IUnknown> container;
  Held<IUnknown> control;
  Sink sink;
  Must(create(L"QuorvaneSecurity.SecurityCtrl", host, stream.Get(), container.Out(), control.Out(),
              IID_NULL, nullptr),
       "AtlAxCreateControlEx");
  Held<IUnknown> same;
  Must(get(host, same.Out()), "AtlAxGetControl");
  std::puts(same.Get() == control.Get() ? "the same control" : "ANOTHER CONTROL");
  Held<ISecurityCtrl> members;
  Must(control->QueryInterface(IID_ISecurityCtrl, members.OutVoid()), "ISecurityCtrl");
  TellAddress(members.Get());
  TellWindow(host);
  ::MoveWindow(host, 0, 0, 200, 100, FALSE);
  TellWindow(host);
  DWORD cookie = 0;
  Must(advise(control.Get(), &sink, &IID_IPropertyNotifySink, &cookie), "AtlAdvise");
  PutAddress(members.Get(), L"changed.example.com");
  Must(unadvise(control.Get(), &IID_IPropertyNotifySink, cookie), "AtlUnadvise");
  PutAddress(members.Get(), L"changed.again.example.com");
  TellAddress(members.Get());
  ::DestroyWindow(host);
  std::printf("references on the sink: %lu\n", sink.references);
}

}  // namespace

int main() {
  Must(::OleInitialize(nullptr), "OleInitialize");
  Host();
  TellWhetherModuleGoes();
  ::OleUninitialize();
}
