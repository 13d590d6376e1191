// The helpers of ole32 as the container: a document with embedded objects in a compound file, a
// stream, the calls that run and lock an object, a picture, and a second apartment.

#include "tests/hosts/host_windows.h"

namespace {

void TellAddress(IUnknown* object, const wchar_t* instead) {
  Held<ISecurityCtrl> control;
  Must(object->QueryInterface(IID_ISecurityCtrl, control.OutVoid()), "ISecurityCtrl");
  TellAddress(control.Get());
  PutAddress(control.Get(), instead);
}

void KeepInACompoundFile() {
  Held<IStorage> file;
  Must(::StgCreateDocfile(nullptr, STGM_READWRITE | STGM_SHARE_EXCLUSIVE | STGM_DELETEONRELEASE, 0,
                          file.Out()),
       "StgCreateDocfile");
  {
    Held<IOleObject> object;
    Held<ISecurityCtrl> control;
    Held<IPersistStorage> storage;
    Must(::OleCreate(CLSID_SecurityCtrl, IID_IOleObject, OLERENDER_NONE, nullptr, nullptr,
                     file.Get(), object.OutVoid()),
         "OleCreate");
    Must(object->QueryInterface(IID_ISecurityCtrl, control.OutVoid()), "ISecurityCtrl");
    Must(object->QueryInterface(IID_IPersistStorage, storage.OutVoid()), "IPersistStorage");
    PutAddress(control.Get(), L"in.a.file.example.com");
    Must(::OleSave(storage.Get(), file.Get(), TRUE), "OleSave");
    Must(storage->SaveCompleted(nullptr), "SaveCompleted");
    PutAddress(control.Get(), L"not.saved.example.com");
    Must(object->Close(OLECLOSE_NOSAVE), "Close");
  }
  Held<IOleObject> object;
  Must(::OleLoad(file.Get(), IID_IOleObject, nullptr, object.OutVoid()), "OleLoad");
  TellAddress(object.Get(), L"in.a.stream.example.com");
}

void KeepInAStream() {
  Held<IPersistStream> control;
  Held<IPersistStream> loaded;
  Held<IStream> stream;
  Must(::CoCreateInstance(CLSID_SecurityCtrl, nullptr, CLSCTX_INPROC_SERVER, IID_IPersistStream,
                          control.OutVoid()),
       "CoCreateInstance");
  Must(::CreateStreamOnHGlobal(nullptr, TRUE, stream.Out()), "CreateStreamOnHGlobal");
  Must(::OleSaveToStream(control.Get(), stream.Get()), "OleSaveToStream");
  Must(stream->Seek({}, STREAM_SEEK_SET, nullptr), "Seek");
  TellAddress(control.Get(), L"not.saved.example.com");
  Must(::OleLoadFromStream(stream.Get(), IID_IPersistStream, loaded.OutVoid()),
       "OleLoadFromStream");
  TellAddress(loaded.Get(), L"");
}

void Run(IUnknown* control) {
  Must(::OleRun(control), "OleRun");
  Must(::OleSetContainedObject(control, TRUE), "OleSetContainedObject");
  Must(::OleLockRunning(control, TRUE, FALSE), "OleLockRunning");
  Must(::OleLockRunning(control, FALSE, FALSE), "OleLockRunning");
  std::puts("run, contained, locked and unlocked");
}

void Draw(IUnknown* control) {
  constexpr int kPixels = 28;
  const HDC target = ::CreateCompatibleDC(nullptr);
  const HBITMAP bitmap = ::CreateBitmap(kPixels, kPixels, 1, 32, nullptr);
  const HGDIOBJ before = ::SelectObject(target, bitmap);
  const RECT place{0, 0, kPixels, kPixels};
  ::FillRect(target, &place, static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH)));
  Must(::OleDraw(control, DVASPECT_CONTENT, target, &place), "OleDraw");
  int painted = 0;
  for (int y = 0; y < kPixels; ++y)
    for (int x = 0; x < kPixels; ++x) painted += ::GetPixel(target, x, y) != RGB(255, 255, 255);
  std::puts(painted > kPixels ? "drawn" : "NOT DRAWN");
  ::SelectObject(target, before);
  ::DeleteObject(bitmap);
  ::DeleteDC(target);
}

DWORD WINAPI CallFromAnotherApartment(void* stream) {
  Must(::OleInitialize(nullptr), "OleInitialize");
  {
    Held<IDispatch> control;
    Must(::CoGetInterfaceAndReleaseStream(static_cast<IStream*>(stream), IID_IDispatch,
                                          control.OutVoid()),
         "CoGetInterfaceAndReleaseStream");
    wchar_t name[] = L"ServerAddress";
    wchar_t* names = name;
    DISPID id = 0;
    Must(control->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id), "GetIDsOfNames");
    DISPPARAMS none{};
    VARIANT value;
    ::VariantInit(&value);
    Must(control->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &value,
                         nullptr, nullptr),
         "Invoke");
    std::printf("from another apartment: ServerAddress=%ls\n", value.bstrVal);
    ::VariantClear(&value);
  }
  ::OleUninitialize();
  return 0;
}

void Marshal(ISecurityCtrl* control) {
  PutAddress(control, L"apart.example.com");
  IStream* stream = nullptr;
  Must(::CoMarshalInterThreadInterfaceInStream(IID_IDispatch, control, &stream),
       "CoMarshalInterThreadInterfaceInStream");
  HANDLE thread = ::CreateThread(nullptr, 0, CallFromAnotherApartment, stream, 0, nullptr);
  while (::MsgWaitForMultipleObjects(1, &thread, FALSE, INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0) {
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) ::DispatchMessageW(&message);
  }
  ::CloseHandle(thread);
}

void Host() {
  KeepInACompoundFile();
  KeepInAStream();
  Held<ISecurityCtrl> control;
  Must(::CoCreateInstance(CLSID_SecurityCtrl, nullptr, CLSCTX_INPROC_SERVER, IID_ISecurityCtrl,
                          control.OutVoid()),
       "CoCreateInstance");
  Run(control.Get());
  Draw(control.Get());
  Marshal(control.Get());
}

}  // namespace

int main() {
  Must(::OleInitialize(nullptr), "OleInitialize");
  Host();
  TellWhetherModuleGoes();
  ::OleUninitialize();
}
