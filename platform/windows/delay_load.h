#pragma once

#include <atomic>

#include "platform/windows/os_headers.h"

namespace quorvane {

/// A library of the system that is loaded at the first use of one of its calls, for what a
/// system may lack or what a host's load shall not pay for. It stays loaded until the module leaves
/// memory. Only the system's own directory is searched.
class DelayLoadLibrary {
 public:
  /// `file_name` must outlive the object.
  explicit DelayLoadLibrary(const wchar_t* file_name) : file_name_(file_name) {}
  ~DelayLoadLibrary();
  DelayLoadLibrary(const DelayLoadLibrary&) = delete;
  DelayLoadLibrary& operator=(const DelayLoadLibrary&) = delete;

  /// The address of an exported call. Raises library not found (48) or entry point not found (453);
  /// the next use then tries again.
  [[nodiscard]] FARPROC EntryPoint(const char* name);

 private:
  [[nodiscard]] HMODULE Module();

  const wchar_t* file_name_;
  std::atomic<HMODULE> module_ = nullptr;
};

/// One call of a delay-loaded library, with the type of a function pointer.
///   DelayLoadCall<decltype(&::GetAdaptersInfo)> call{library, "GetAdaptersInfo"};
///   call()(block, size);
template <class Function>
class DelayLoadCall {
 public:
  DelayLoadCall(DelayLoadLibrary& library, const char* name) : library_(library), name_(name) {}

  /// The function; raises as DelayLoadLibrary::EntryPoint() does.
  [[nodiscard]] Function operator()() {
    Function function = function_.load();
    if (function == nullptr) {
      function = reinterpret_cast<Function>(reinterpret_cast<void*>(library_.EntryPoint(name_)));
      function_.store(function);
    }
    return function;
  }

 private:
  DelayLoadLibrary& library_;
  const char* name_;
  std::atomic<Function> function_ = nullptr;
};

}  // namespace quorvane
