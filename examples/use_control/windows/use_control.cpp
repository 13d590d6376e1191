// use_control: creates the control by its name, sets and reads the seven settings, and asks for the
// checksum of the module's file. All by late binding, as a script does it; works with a registered
// module, and without any registration when a manifest beside the program
// (use_control.exe.manifest) leads to it.

#include <windows.h>

#include <oleauto.h>

#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>

namespace {

void Check(HRESULT result, const char* what) {
  if (SUCCEEDED(result)) return;
  char text[200];
  std::snprintf(text, sizeof text, "%s fails: 0x%08lX", what, static_cast<unsigned long>(result));
  throw std::runtime_error(text);
}

/// The control, late-bound; created by name, released at the end.
class Control {
 public:
  Control() {
    CLSID class_id;
    Check(::CLSIDFromProgID(L"QuorvaneSecurity.SecurityCtrl", &class_id), "finding the class");
    Check(::CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                             reinterpret_cast<void**>(&control_)),
          "creating the control");
  }
  ~Control() { control_->Release(); }
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  void Put(const wchar_t* name, const wchar_t* value) {
    VARIANT text;
    ::VariantInit(&text);
    text.vt = VT_BSTR;
    text.bstrVal = ::SysAllocString(value);
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS arguments{&text, &put, 1, 1};
    const HRESULT result =
        control_->Invoke(Id(name), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &arguments,
                         nullptr, nullptr, nullptr);
    ::VariantClear(&text);
    Check(result, "setting a property");
  }

  /// What a property or a function gives, as text.
  std::wstring Get(const wchar_t* name) {
    VARIANT value;
    ::VariantInit(&value);
    DISPPARAMS none{};
    Check(control_->Invoke(Id(name), IID_NULL, LOCALE_USER_DEFAULT,
                           DISPATCH_PROPERTYGET | DISPATCH_METHOD, &none, &value, nullptr, nullptr),
          "reading a property");
    Check(::VariantChangeType(&value, &value, VARIANT_ALPHABOOL, VT_BSTR), "making a text of it");
    const std::wstring text(value.bstrVal, ::SysStringLen(value.bstrVal));
    ::VariantClear(&value);
    return text;
  }

 private:
  DISPID Id(const wchar_t* name) {
    std::wstring copy = name;
    wchar_t* names = copy.data();
    DISPID id = DISPID_UNKNOWN;
    Check(control_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id),
          "finding a member");
    return id;
  }

  IDispatch* control_ = nullptr;
};

void UseControl() {
  Control control;
  const wchar_t* const settings[][2] = {
      {L"ServerAddress", L"reports.example.com"},  {L"ServerPort", L"8080"},
      {L"ServerFile", L"/scripts/collect.asp"},    {L"UseProxy", L"True"},
      {L"ProxyServer", L"proxy.example.com:3128"}, {L"UserName", L"clerk"},
      {L"Password", L"tea and biscuits"},
  };
  for (const auto& [name, value] : settings) control.Put(name, value);
  for (const auto& [name, value] : settings) {
    std::printf("%ls=%ls\n", name, control.Get(name).c_str());
  }
  std::printf("GetCRCValue=%ls\n", control.Get(L"GetCRCValue").c_str());
}

}  // namespace

int main() {
  if (FAILED(::CoInitialize(nullptr))) return 1;
  int exit_code = 0;
  try {
    UseControl();
    std::puts("done");
  } catch (const std::exception& error) {
    std::fprintf(stderr, "use_control: %s\n", error.what());
    exit_code = 1;
  }
  ::CoUninitialize();
  return exit_code;
}
