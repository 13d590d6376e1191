// The control through its virtual table, by the header beside this file, which the build writes.
#include "security_ctrl.h"

#include <cstdio>

int main() {
  CoInitialize(nullptr);
  ISecurityCtrl* control = nullptr;
  HRESULT result = CoCreateInstance(CLSID_SecurityCtrl, nullptr, CLSCTX_INPROC_SERVER,
                                    IID_ISecurityCtrl, reinterpret_cast<void**>(&control));
  if (FAILED(result)) return std::printf("no control: 0x%08lX\n", result), 1;

  BSTR address = SysAllocString(L"reports.example.com");
  result = control->put_ServerAddress(address);
  SysFreeString(address);
  address = nullptr;
  if (SUCCEEDED(result)) result = control->get_ServerAddress(&address);
  if (SUCCEEDED(result)) std::printf("ServerAddress=%ls\n", address);
  SysFreeString(address);

  long crc = 0;
  if (SUCCEEDED(result)) result = control->GetCRCValue(&crc);
  if (SUCCEEDED(result)) std::printf("GetCRCValue=%ld\n", crc);
  control->Release();
  CoUninitialize();
  return SUCCEEDED(result) ? 0 : 1;
}
