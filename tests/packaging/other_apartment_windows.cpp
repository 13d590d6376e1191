// Creates the control on one thread and uses it on another, in its own apartment: that takes the
// interface's marshaller, which the manifest must name. Prints what the other thread was answered.

#include <windows.h>

#include <oleauto.h>

#include <cstdio>

namespace {

IStream* parcel = nullptr;
HRESULT outcome = E_FAIL;

DWORD WINAPI OtherApartment(void*) {
  ::CoInitialize(nullptr);
  IDispatch* control = nullptr;
  outcome =
      ::CoGetInterfaceAndReleaseStream(parcel, IID_IDispatch, reinterpret_cast<void**>(&control));
  if (SUCCEEDED(outcome)) {
    wchar_t name[] = L"GetCRCValue";
    wchar_t* names = name;
    DISPID id = 0;
    outcome = control->GetIDsOfNames(IID_NULL, &names, 1, 1033, &id);
    DISPPARAMS none{};
    VARIANT value{};
    if (SUCCEEDED(outcome)) {
      outcome =
          control->Invoke(id, IID_NULL, 1033, DISPATCH_METHOD, &none, &value, nullptr, nullptr);
    }
    if (SUCCEEDED(outcome)) std::printf("GetCRCValue=%ld\n", static_cast<long>(value.lVal));
    control->Release();
  }
  ::CoUninitialize();
  return 0;
}

}  // namespace

int main() {
  ::CoInitialize(nullptr);
  CLSID class_id;
  IDispatch* control = nullptr;
  HRESULT result = ::CLSIDFromProgID(L"QuorvaneSecurity.SecurityCtrl", &class_id);
  if (SUCCEEDED(result)) {
    result = ::CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                reinterpret_cast<void**>(&control));
  }
  if (SUCCEEDED(result))
    result = ::CoMarshalInterThreadInterfaceInStream(IID_IDispatch, control, &parcel);
  if (FAILED(result)) {
    std::printf("failed: 0x%08lX\n", static_cast<unsigned long>(result));
    return 1;
  }
  const HANDLE thread = ::CreateThread(nullptr, 0, OtherApartment, nullptr, 0, nullptr);
  // The control's own apartment answers through its queue of messages.
  while (::MsgWaitForMultipleObjects(1, &thread, FALSE, INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0) {
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) ::DispatchMessageW(&message);
  }
  control->Release();
  ::CoUninitialize();
  std::printf("outcome 0x%08lX\n", static_cast<unsigned long>(outcome));
  return FAILED(outcome);
}
