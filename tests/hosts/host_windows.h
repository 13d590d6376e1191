#pragma once

// What the hosts in C++ share. Each prints what it met, a line each, and test_hosts.py knows the
// lines.

#include <ole2.h>
#include <olectl.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>

#include "examples/cpp/security_ctrl.h"

/// Ends the host with the name of the call that failed.
inline void Must(HRESULT result, const char* call) {
  if (SUCCEEDED(result)) return;
  std::printf("%s: 0x%08lX\n", call, result);
  std::exit(1);
}

/// A pointer that this host holds a reference on.
template <class Interface>
class Held {
 public:
  Held() = default;
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  ~Held() { Drop(); }
  void Drop() {
    if (pointer_ != nullptr) pointer_->Release();
    pointer_ = nullptr;
  }
  Interface* operator->() const { return pointer_; }
  Interface* Get() const { return pointer_; }
  Interface** Out() { return &pointer_; }
  void** OutVoid() { return reinterpret_cast<void**>(&pointer_); }

 private:
  Interface* pointer_ = nullptr;
};

inline void PutAddress(ISecurityCtrl* control, const wchar_t* address) {
  BSTR text = ::SysAllocString(address);
  Must(control->put_ServerAddress(text), "put_ServerAddress");
  ::SysFreeString(text);
}

inline void TellAddress(ISecurityCtrl* control) {
  BSTR text = nullptr;
  Must(control->get_ServerAddress(&text), "get_ServerAddress");
  std::printf("ServerAddress=%ls\n", text);
  ::SysFreeString(text);
}

/// Says whether the module counts nothing of its own as used, and leaves memory when it is asked
/// to.
inline void TellWhetherModuleGoes() {
  const HMODULE module = ::GetModuleHandleW(L"QuorvaneSecurity.ocx");
  const auto can_unload = reinterpret_cast<HRESULT(WINAPI*)()>(
      reinterpret_cast<void*>(::GetProcAddress(module, "DllCanUnloadNow")));
  std::puts(can_unload != nullptr && can_unload() == S_OK ? "unused" : "STILL IN USE");
  ::CoFreeUnusedLibrariesEx(0, 0);
  std::puts(::GetModuleHandleW(L"QuorvaneSecurity.ocx") == nullptr ? "unloaded" : "STILL LOADED");
}
