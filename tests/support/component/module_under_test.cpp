#include "tests/support/component/module_under_test.h"

namespace quorvane::component {
namespace {

template <class Function>
Function As(FARPROC address) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(address));
}

using PlainExport = HRESULT(STDMETHODCALLTYPE*)();
using GetClassObjectExport = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);

}  // namespace

Module::Module(const std::wstring& path) : handle_(::LoadLibraryW(path.c_str())) {
  EXPECT_NE(handle_, nullptr) << "cannot load the module, error " << ::GetLastError();
}

Module::~Module() {
  if (handle_ != nullptr) ::FreeLibrary(handle_);
}

HRESULT Module::GetClassObject(REFCLSID class_id, REFIID id, void** out) const {
  return As<GetClassObjectExport>(Export("DllGetClassObject"))(class_id, id, out);
}

HRESULT Module::CanUnloadNow() const { return As<PlainExport>(Export("DllCanUnloadNow"))(); }

HRESULT Module::Register() const { return As<PlainExport>(Export("DllRegisterServer"))(); }

HRESULT Module::Unregister() const { return As<PlainExport>(Export("DllUnregisterServer"))(); }

Com<IClassFactory> Module::ClassObject() const {
  Com<IClassFactory> factory;
  EXPECT_EQ(GetClassObject(kClassId, IID_IClassFactory, factory.OutVoid()), S_OK);
  return factory;
}

Com<IUnknown> Module::CreateControl() const {
  Com<IUnknown> control;
  EXPECT_EQ(ClassObject()->CreateInstance(nullptr, IID_IUnknown, control.OutVoid()), S_OK);
  return control;
}

Com<ISecurityCtrl> Module::CreateSecurityCtrl() const {
  return CreateControl().As<ISecurityCtrl>(kSecurityCtrlId);
}

ULONG_PTR HandlePlace() {
  const HANDLE probe = ::CreateEventW(nullptr, FALSE, FALSE, nullptr);
  ::CloseHandle(probe);
  return reinterpret_cast<ULONG_PTR>(probe) / 4;
}

bool IsInMemory(const std::wstring& path) { return ::GetModuleHandleW(path.c_str()) != nullptr; }

TemporaryFolder::TemporaryFolder() {
  wchar_t temp[MAX_PATH];
  ::GetTempPathW(MAX_PATH, temp);
  static LONG counter = 0;
  // A name may be taken by a run that was ended, whose number comes again.
  do {
    path_ = std::wstring(temp) + L"quorvane-" + std::to_wstring(::GetCurrentProcessId()) + L"-" +
            std::to_wstring(::InterlockedIncrement(&counter));
  } while (!::CreateDirectoryW(path_.c_str(), nullptr) && ::GetLastError() == ERROR_ALREADY_EXISTS);
}

TemporaryFolder::~TemporaryFolder() {
  WIN32_FIND_DATAW found;
  const HANDLE search = ::FindFirstFileW(File(L"*").c_str(), &found);
  if (search != INVALID_HANDLE_VALUE) {
    do {
      ::SetFileAttributesW(File(found.cFileName).c_str(), FILE_ATTRIBUTE_NORMAL);
      ::DeleteFileW(File(found.cFileName).c_str());
    } while (::FindNextFileW(search, &found));
    ::FindClose(search);
  }
  ::RemoveDirectoryW(path_.c_str());
}

FreshModule::FreshModule() {
  const std::wstring copy = folder_.File(L"fresh.ocx");
  EXPECT_TRUE(::CopyFileW(QUORVANE_MODULE_FILE, copy.c_str(), TRUE));
  module_.emplace(copy);
}

}  // namespace quorvane::component
