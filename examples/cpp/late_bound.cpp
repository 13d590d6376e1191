// The control by the names of its members, as a script uses it.
#include <windows.h>

#include <oleauto.h>

#include <cstdio>

// Calls or puts a member by its name.
HRESULT Invoke(IDispatch* control, const wchar_t* member, WORD kind, DISPPARAMS arguments,
               VARIANT* result) {
  auto* name = const_cast<wchar_t*>(member);
  DISPID id = DISPID_UNKNOWN;
  const HRESULT found = control->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(found)) return found;
  return control->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &arguments, result, nullptr,
                         nullptr);
}

int main() {
  CoInitialize(nullptr);
  CLSID class_id{};
  IDispatch* control = nullptr;
  HRESULT result = CLSIDFromProgID(L"QuorvaneSecurity.SecurityCtrl", &class_id);
  if (SUCCEEDED(result))
    result = CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                              reinterpret_cast<void**>(&control));
  if (FAILED(result)) return std::printf("no control: 0x%08lX\n", result), 1;

  VARIANT value{};
  value.vt = VT_I2;
  value.iVal = 8080;
  DISPID put = DISPID_PROPERTYPUT;
  result = Invoke(control, L"ServerPort", DISPATCH_PROPERTYPUT, {&value, &put, 1, 1}, nullptr);
  if (SUCCEEDED(result)) result = Invoke(control, L"ServerPort", DISPATCH_PROPERTYGET, {}, &value);
  if (SUCCEEDED(result)) std::printf("ServerPort=%d\n", value.iVal);
  if (SUCCEEDED(result)) result = Invoke(control, L"GetCRCValue", DISPATCH_METHOD, {}, &value);
  if (SUCCEEDED(result)) std::printf("GetCRCValue=%ld\n", value.lVal);
  control->Release();
  CoUninitialize();
  return SUCCEEDED(result) ? 0 : 1;
}
