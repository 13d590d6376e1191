#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <thread>

#include "tests/support/component/com.h"
#include "tests/support/replaced_import_windows.h"

namespace quorvane::component {

/// The module, loaded as a host's loader does. A path other than the built one serves tests of
/// copies of it.
class Module {
 public:
  explicit Module(const std::wstring& path = QUORVANE_MODULE_FILE);
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;
  ~Module();

  bool IsLoaded() const { return handle_ != nullptr; }
  HMODULE Handle() const { return handle_; }
  /// By name, undecorated.
  FARPROC Export(const char* name) const { return ::GetProcAddress(handle_, name); }

  HRESULT GetClassObject(REFCLSID class_id, REFIID id, void** out) const;
  HRESULT CanUnloadNow() const;
  HRESULT Register() const;
  HRESULT Unregister() const;

  Com<IClassFactory> ClassObject() const;
  /// A new control, asked for by IUnknown.
  Com<IUnknown> CreateControl() const;
  Com<ISecurityCtrl> CreateSecurityCtrl() const;

 private:
  HMODULE handle_ = nullptr;
};

/// Runs the body on a thread of its own in an apartment of its own (OleInitialize), so that it
/// meets fresh settings.
template <class Body>
void OnApartmentThread(Body body) {
  std::thread([&body] {
    ASSERT_TRUE(SUCCEEDED(::OleInitialize(nullptr)));
    body();
    ::OleUninitialize();
  }).join();
}

/// The place of a new handle among all. Freed places are used again, so it grows only with handles
/// that are lost. The system's own count does not serve: Wine always gives 0.
ULONG_PTR HandlePlace();

/// Whether the module of this path is in the process's memory.
bool IsInMemory(const std::wstring& path = QUORVANE_MODULE_FILE);

/// A folder that is removed, with what it holds, at the end of the test.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  std::wstring Path() const { return path_; }
  /// The path of a file in the folder.
  std::wstring File(const std::wstring& name) const { return path_ + L"\\" + name; }

 private:
  std::wstring path_;
};

/// A copy of the module that no thread has used: its exception handling has no variables yet.
class FreshModule {
 public:
  FreshModule();
  const Module& Get() const { return *module_; }

 private:
  TemporaryFolder folder_;
  std::optional<Module> module_;
};

}  // namespace quorvane::component
